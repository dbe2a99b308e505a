#pragma once

#include <array>
#include <cstdint>

#include "VelmoraCore/DSP/ADSR.h"
#include "VelmoraCore/Instruments/SynthParameters.h"

namespace velmora {

inline constexpr int voiceCount = 8;

/// One number of each voice, side by side.
using VoiceFloats = std::array<float, voiceCount>;

/// The envelopes of the eight voices. They share one shape; each has its own stage and level.
///
/// A stage is held as the recursion that runs it and the two bounds that end it, so that all voices step
/// alike.
struct EnvelopeLanes {
  ADSR shape;
  std::array<ADSR::Stage, voiceCount> stage{};
  alignas(32) VoiceFloats level{};
  alignas(32) VoiceFloats base{};
  alignas(32) VoiceFloats coefficient{};
  alignas(32) VoiceFloats upperBound{};  ///< reaching it ends the attack
  alignas(32) VoiceFloats lowerBound{};  ///< reaching it ends the decay or the release
  alignas(32) std::array<std::int32_t, voiceCount> isSustaining{};  ///< all bits set where so

  EnvelopeLanes();

  void setShape(const ADSR& newShape) noexcept;
  void enter(int voice, ADSR::Stage newStage) noexcept;
  void start(int voice) noexcept;       ///< attack from level 0
  void noteOff(int voice) noexcept;     ///< release, unless idle
  void silence(int voice) noexcept;     ///< idle at level 0
  void crossBound(int voice) noexcept;  ///< the level has reached the end of its stage
  bool isIdle(int voice) const noexcept {
    return stage[static_cast<std::size_t>(voice)] == ADSR::Stage::idle;
  }
};

/// A phase and its increment for each voice, in cycles.
struct OscillatorLanes {
  alignas(32) VoiceFloats phase{};
  alignas(32) VoiceFloats increment{};
};

/// A low-pass for each voice, as in Biquad with b2 = b0.
struct FilterLanes {
  alignas(32) VoiceFloats b0{};
  alignas(32) VoiceFloats b1{};
  alignas(32) VoiceFloats a1{};
  alignas(32) VoiceFloats a2{};
  alignas(32) VoiceFloats z1{};
  alignas(32) VoiceFloats z2{};
  alignas(32) VoiceFloats designedCutoff{};  ///< what the coefficients were designed for, in hertz
};

/// The sound of the eight voices of a synthesizer, lane by lane. A lane without a note has idle envelopes and
/// so adds nothing.
struct VoiceLanes {
  OscillatorLanes osc1;
  OscillatorLanes osc2;
  FilterLanes filter;
  EnvelopeLanes ampEnv;
  EnvelopeLanes filterEnv;
  alignas(32) VoiceFloats velocityGain{};
  alignas(32) VoiceFloats cutoffScale{};
  alignas(32) VoiceFloats fadeGain{};            ///< 1 unless fading
  alignas(32) VoiceFloats fadeStep{};            ///< 0 unless fading
  std::array<int, voiceCount> controlCounter{};  ///< samples since the last filter update, 0 to 7
  float sampleRate = 44100;
  const SynthParameters* parameters = &SynthParameters::standard(SynthPreset::miniSynth);
};

}  // namespace velmora
