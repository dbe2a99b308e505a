#pragma once

#include <cstdint>

namespace velmora {

/// A first-order low-pass or high-pass. A new one is a low-pass that follows its input at once. [audio
/// thread]
struct OnePole {
  enum class Mode : std::uint8_t { lowPass, highPass };

  Mode mode = Mode::lowPass;
  float coefficient = 1;
  float state = 0;

  // Cutoff in hertz, from 0 to half the sample rate.
  void setLowPass(float cutoff, float sampleRate) noexcept;
  void setHighPass(float cutoff, float sampleRate) noexcept;

  float process(float x) noexcept {
    state = state + coefficient * (x - state);
    return mode == Mode::lowPass ? state : x - state;
  }

  void reset() noexcept { state = 0; }
};

}  // namespace velmora
