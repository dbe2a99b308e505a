#pragma once

#include <atomic>

namespace platform {

/// A number that any thread sets and that the audio thread reaches in a straight line within 10 ms, counted
/// in frames, so that a moved knob makes no zipper noise. A value set before the first block takes effect at
/// once.
class GlidingParameter {
 public:
  static constexpr double glideSeconds = 0.01;

  explicit GlidingParameter(float value) noexcept : target_(value), end_(value) {}

  /// Sets the length of a glide; the next block starts at the target. Not while the audio thread runs.
  void prepare(double sampleRate) noexcept;
  /// The next block starts at the target.
  void reset() noexcept { hasStarted_ = false; }

  /// Any thread. A value that is not finite is ignored.
  void set(float target) noexcept;
  float target() const noexcept { return target_.load(std::memory_order_relaxed); }

  /// [audio thread] Takes up a target set since the last block.
  void beginBlock() noexcept;
  /// [audio thread] The value of the latest frame.
  float value() const noexcept { return end_ - step_ * static_cast<float>(remaining_); }
  bool isGliding() const noexcept { return remaining_ > 0; }
  bool isResting(float at) const noexcept { return remaining_ == 0 && end_ == at; }
  /// [audio thread] Moves on by one frame.
  float next() noexcept;
  /// [audio thread] Moves on by `frameCount` frames and writes their values.
  void fill(float* values, int frameCount) noexcept;
  /// [audio thread] Moves on by `frameCount` frames.
  void skip(int frameCount) noexcept;

 private:
  std::atomic<float> target_;
  float end_;
  float step_ = 0;
  int remaining_ = 0;
  int length_ = 480;
  bool hasStarted_ = false;
};

}  // namespace platform
