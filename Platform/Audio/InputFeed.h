#pragma once

#include <atomic>
#include <cstdint>
#include <span>

#include "Platform/Audio/LostFrameCounter.h"
#include "Platform/Audio/SampleRing.h"
#include "Platform/Audio/StreamFeed.h"

namespace platform {

/// Where the callback of a mono input leaves its frames for a thread that takes its time over them.
class InputFeed final : public StreamFeed {
 public:
  /// Takes up `frameLimit` frames, and no more. `room` is how many can wait to be read.
  InputFeed(std::int64_t frameLimit, std::size_t room) : frameLimit_(frameLimit), ring_(room) {}

  /// Frames are taken up between these two; a block that is in flight may count or not.
  void begin() noexcept { isOpen_.store(true, std::memory_order_relaxed); }
  void end() noexcept { isOpen_.store(false, std::memory_order_relaxed); }

  /// The reading thread. Returns how many frames there were, at most as many as the buffer takes.
  std::size_t read(std::span<float> buffer) noexcept { return ring_.pop(buffer); }

  /// Any thread. Counts the callbacks, open or not.
  std::uint64_t callbackCount() const noexcept { return callbackCount_.load(std::memory_order_relaxed); }
  /// Any thread. Frames taken up.
  std::int64_t frameCount() const noexcept { return frameCount_.load(std::memory_order_relaxed); }
  /// Any thread.
  bool isFull() const noexcept { return frameCount() >= frameLimit_; }
  /// Any thread. Frames that the server never brought, or that the reading thread was too late for.
  std::int64_t lostFrames() const noexcept {
    return lost_.count() + droppedFrames_.load(std::memory_order_relaxed);
  }

  /// [audio thread]
  void exchange(const float* input, float*, int frameCount, double sampleRate) noexcept override;

 private:
  const std::int64_t frameLimit_;
  SampleRing ring_;
  LostFrameCounter lost_;
  std::atomic<bool> isOpen_{false};
  std::atomic<std::uint64_t> callbackCount_{0};
  std::atomic<std::int64_t> frameCount_{0};
  std::atomic<std::int64_t> droppedFrames_{0};
};

}  // namespace platform
