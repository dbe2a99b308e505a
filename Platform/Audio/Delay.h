#pragma once

#include "Platform/Audio/DelayLine.h"
#include "Platform/Audio/GlidingParameter.h"

namespace platform {

/// An echo: a delay line whose output passes a one-pole low-pass (-3 dB at 15 kHz) and feeds back, so that
/// each repeat is softer and a little darker than the one before. Mono. Out = dry * (1 - mix) + wet * mix; at
/// mix 0 it holds no state.
class Delay {
 public:
  static constexpr double lowPassFrequency = 15000;

  explicit Delay(double delayTime = 0.25, float feedbackPercent = 25);

  /// Allocates. Not while the audio thread runs.
  void prepare(double sampleRate);
  void reset() noexcept;

  /// Any thread. Percent, clamped to 0...100.
  void setWetDryMix(float percent) noexcept;
  float wetDryMix() const noexcept { return mixPercent_.target(); }
  double delayTime() const noexcept { return delayTime_; }
  float feedbackPercent() const noexcept { return feedback_ * 100; }

  /// [audio thread] In place.
  void process(float* samples, int frameCount) noexcept;
  /// [audio thread] True if silence in gives silence out.
  bool isQuiet() const noexcept { return silentFrames_ >= line_.length() && lowPassState_ == 0; }
  /// [audio thread] The same as processing silence while quiet.
  void skip(int frameCount) noexcept;

 private:
  void processChunk(float* samples, int frameCount) noexcept;
  void clear() noexcept;

  double delayTime_;
  float feedback_;
  GlidingParameter mixPercent_{0};
  DelayLine line_;
  int delayFrames_ = 1;
  float lowPassPole_ = 0;
  float lowPassState_ = 0;
  int silentFrames_ = 0;  // since the last frame other than zero went into the line
};

}  // namespace platform
