#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace platform {

/// Counts the audio callbacks that come late: more than two of the usual gaps after the one before. What is
/// usual follows the size of the blocks, which differs from server to server and changes while it plays.
class LateCallbackCounter {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// Not while `note` may run. The next callback is a first one again; the count stays.
  void restart() noexcept { noted_ = 0; }
  /// [audio thread] A callback for `frameCount` frames came at `now`.
  void note(Time now, int frameCount, double sampleRate) noexcept;
  /// Any thread.
  std::uint64_t count() const noexcept { return count_.load(std::memory_order_relaxed); }

 private:
  static constexpr int firstNoted = 8;  // the first ones fill the server's buffer

  double usualFrames_ = 0;
  int noted_ = 0;
  Time last_;
  std::atomic<std::uint64_t> count_{0};
};

}  // namespace platform
