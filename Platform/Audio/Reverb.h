#pragma once

#include <array>

#include "Platform/Audio/Allpass.h"
#include "Platform/Audio/DelayLine.h"
#include "Platform/Audio/FeedbackDelayNetwork.h"
#include "Platform/Audio/GlidingParameter.h"

namespace platform {

/// One medium hall: mono in, two sides out that differ. It rings for about 1.8 s, less towards the highs.
///
/// A pre-delay, allpasses that turn a click into a dense burst, the last of them different on each side, and
/// a feedback delay network for the late sound. Out = dry * (1 - mix) + wet * mix, where the wet signal is
/// about as loud as the dry; at mix 0 the unit copies its input to both sides and holds no state.
class Reverb {
 public:
  explicit Reverb(double sampleRate = 48000) { prepare(sampleRate); }

  /// Allocates about 1.2 s of samples. Not while the audio thread runs.
  void prepare(double sampleRate);
  void reset() noexcept;

  /// Any thread. Percent, clamped to 0...100.
  void setWetDryMix(float percent) noexcept;
  float wetDryMix() const noexcept { return mixPercent_.target(); }

  /// [audio thread] `mono` may be `left` or `right`.
  void process(const float* mono, float* left, float* right, int frameCount) noexcept;
  /// [audio thread] True if silence in gives silence out.
  bool isQuiet() const noexcept { return silentFrames_ >= memoryFrames_; }
  /// [audio thread] The same as processing silence while quiet.
  void skip(int frameCount) noexcept;

 private:
  using Chunk = std::array<float, DelayLine::chunkFrames>;

  void processChunk(const float* mono, float* left, float* right, int frameCount) noexcept;
  void renderRoom(const float* mono, Chunk& wetLeft, Chunk& wetRight, int frameCount) noexcept;
  void clear() noexcept;

  GlidingParameter mixPercent_{0};
  DelayLine preDelay_;
  int preDelayFrames_ = 0;
  std::array<Allpass, 5> diffusers_;
  Allpass leftDiffuser_, rightDiffuser_;
  FeedbackDelayNetwork network_;
  float lateGain_ = 0;
  int memoryFrames_ = 0;  // what is longer ago is forgotten
  int silentFrames_ = 0;  // since a sample other than zero went into any line
};

}  // namespace platform
