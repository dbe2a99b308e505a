#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <span>
#include <vector>

namespace platform {

/// Samples on their way from one thread to one other, neither of which ever waits.
class SampleRing {
 public:
  /// Holds at least `capacity` samples.
  explicit SampleRing(std::size_t capacity) : samples_(std::bit_ceil(capacity)) {}

  /// [audio thread] Returns how many fitted in.
  std::size_t push(std::span<const float> samples) noexcept {
    const std::size_t end = end_.load(std::memory_order_relaxed);
    const std::size_t room = samples_.size() - (end - start_.load(std::memory_order_acquire));
    const std::size_t count = std::min(samples.size(), room);
    for (std::size_t i = 0; i < count; ++i) samples_[(end + i) & (samples_.size() - 1)] = samples[i];
    end_.store(end + count, std::memory_order_release);
    return count;
  }

  /// The reading thread. Returns how many there were, at most as many as the buffer takes.
  std::size_t pop(std::span<float> buffer) noexcept {
    const std::size_t start = start_.load(std::memory_order_relaxed);
    const std::size_t count = std::min(buffer.size(), end_.load(std::memory_order_acquire) - start);
    for (std::size_t i = 0; i < count; ++i) buffer[i] = samples_[(start + i) & (samples_.size() - 1)];
    start_.store(start + count, std::memory_order_release);
    return count;
  }

 private:
  std::vector<float> samples_;
  alignas(64) std::atomic<std::size_t> start_{
      0};  // both count on and on: the ring's size divides their range
  alignas(64) std::atomic<std::size_t> end_{0};
};

}  // namespace platform
