#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace platform {

/// Counts the frames that an input should have brought by the monotonic clock but didn't: a server that is
/// short of time drops some without a word.
///
/// Callbacks that come early or late are no loss, nor is a device whose clock runs slightly off. So half
/// seconds are compared, each by its most punctual callback: where the deficit grows from one to the next by
/// more than clocks can differ it counts, and where it shrinks again that is taken back. A loss within the
/// last second goes unseen.
class LostFrameCounter {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// [audio thread] A callback brought `frameCount` frames at `now`.
  void note(Time now, int frameCount, double sampleRate) noexcept;
  /// Any thread.
  std::int64_t count() const noexcept { return count_.load(std::memory_order_relaxed); }

 private:
  static constexpr std::chrono::milliseconds stretch{500};
  static constexpr double clockDifference = 0.001;  // seconds in one stretch

  void endStretch(double sampleRate) noexcept;

  Time start_, stretchStart_;
  std::int64_t frames_ = -1;       // since the first callback, none before it
  double leastDeficit_ = 0;        // of this stretch, in frames
  double leastDeficitBefore_ = 0;  // of the one before
  bool hasBefore_ = false;
  double lost_ = 0;
  std::atomic<std::int64_t> count_{0};
};

}  // namespace platform
