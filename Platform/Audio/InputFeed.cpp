#include "Platform/Audio/InputFeed.h"

#include <algorithm>
#include <chrono>

namespace platform {

void InputFeed::exchange(const float* input, float*, int frameCount, double sampleRate) noexcept {
  callbackCount_.fetch_add(1, std::memory_order_relaxed);
  if (!isOpen_.load(std::memory_order_relaxed)) return;
  lost_.note(std::chrono::steady_clock::now(), frameCount, sampleRate);
  const std::int64_t wanted = std::min<std::int64_t>(frameCount, frameLimit_ - this->frameCount());
  const auto taken = static_cast<std::int64_t>(ring_.push({input, static_cast<std::size_t>(wanted)}));
  frameCount_.fetch_add(taken, std::memory_order_relaxed);
  droppedFrames_.fetch_add(wanted - taken, std::memory_order_relaxed);
}

}  // namespace platform
