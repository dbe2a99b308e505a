#pragma once

#include <atomic>

namespace velmora {

/// Carries the peak of the latest block from an audio thread to the interface. No decay, no hold, no lock: a
/// stale reading is harmless.
class PeakMeter {
 public:
  void store(float value) noexcept { bits_.store(value, std::memory_order_relaxed); }  ///< [audio thread]
  float load() const noexcept { return bits_.load(std::memory_order_relaxed); }

 private:
  std::atomic<float> bits_{0};
  static_assert(std::atomic<float>::is_always_lock_free);
};

}  // namespace velmora
