#include "Platform/Audio/LateCallbackCounter.h"

namespace platform {

void LateCallbackCounter::note(Time now, int frameCount, double sampleRate) noexcept {
  const double gapFrames = std::chrono::duration<double>(now - last_).count() * sampleRate;
  if (noted_ >= firstNoted && gapFrames > 2 * usualFrames_) count_.fetch_add(1, std::memory_order_relaxed);
  usualFrames_ = noted_ == 0 ? frameCount : usualFrames_ + (frameCount - usualFrames_) / 4;
  if (noted_ < firstNoted) ++noted_;
  last_ = now;
}

}  // namespace platform
