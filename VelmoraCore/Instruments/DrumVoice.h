#pragma once

#include <cstdint>

#include "VelmoraCore/DSP/Biquad.h"
#include "VelmoraCore/DSP/NoiseSource.h"
#include "VelmoraCore/Song/DrumSound.h"

namespace velmora {

/// One drum: a formula over decaying exponentials, sines and noise. Every hit starts it again, at once; the
/// noise and the filter run on, so that no two hits sound alike.
class DrumVoice {
 public:
  DrumVoice(DrumSound sound, std::uint32_t noiseSeed) : sound_(sound), noise_(noiseSeed) {}

  /// Takes the rate in frames per second; ends what sounds.
  void prepare(float sampleRate) noexcept;

  void hit(std::uint8_t velocity) noexcept;  ///< [audio thread]
  bool isActive() const noexcept { return isActive_; }
  float gain() const noexcept { return gain_; }

  /// Adds `frameCount` samples, fewer if the sound ends before. [audio thread]
  void render(float* into, int frameCount) noexcept;

 private:
  template <DrumSound sound>
  void run(float* into, int frameCount) noexcept;
  template <DrumSound sound>
  float step() noexcept;

  float stepKick() noexcept;
  float stepRim() noexcept;
  float stepSnare() noexcept;
  float stepClap() noexcept;
  float stepHat() noexcept;
  float stepLowTom() noexcept;
  float stepPerc() noexcept;

  DrumSound sound_;
  bool isActive_ = false;
  float gain_ = 0;
  int frame_ = 0;  // samples since the hit
  float env1_ = 0;
  float env1Coefficient_ = 0;
  float env2_ = 0;
  float env2Coefficient_ = 0;
  float pitchEnv_ = 0;  // from 1 down to 0
  float pitchCoefficient_ = 0;
  float phase1_ = 0;  // cycles, from 0 up to 1
  float phase2_ = 0;
  NoiseSource noise_;
  Biquad filter_;
  float sampleRate_ = 44100;
  int burstSpacing_ = 441;  // frames between the bursts of a clap
  int lifetime_ = 88200;    // frames after which a hit ends in any case
};

}  // namespace velmora
