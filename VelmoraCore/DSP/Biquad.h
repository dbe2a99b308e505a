#pragma once

namespace velmora {

/// A second-order filter in transposed direct form II. A new one passes the signal unchanged.
///
/// The designs are the audio equalizer cookbook's, computed in double precision and stored in single. [audio
/// thread]
struct Biquad {
  float b0 = 1;
  float b1 = 0;
  float b2 = 0;
  float a1 = 0;
  float a2 = 0;
  float z1 = 0;
  float z2 = 0;

  // Cutoff in hertz, from 1 to 0.499 of the sample rate; q at least 0.05. The state stays.
  void setLowPass(float cutoff, float q, float sampleRate) noexcept;
  void setHighPass(float cutoff, float q, float sampleRate) noexcept;
  void setBandPass(float cutoff, float q, float sampleRate) noexcept;  ///< peak at 0 dB

  float process(float x) noexcept {
    const float y = x * b0 + z1;
    z1 = z2 + (x * b1 - y * a1);
    z2 = x * b2 - y * a2;
    return y;
  }

  void reset() noexcept { z1 = z2 = 0; }
};

}  // namespace velmora
