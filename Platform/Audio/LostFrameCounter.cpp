#include "Platform/Audio/LostFrameCounter.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace platform {

void LostFrameCounter::note(Time now, int frameCount, double sampleRate) noexcept {
  if (frames_ < 0) {
    start_ = stretchStart_ = now;
    frames_ = 0;
    return;
  }
  frames_ += frameCount;
  const double due = std::chrono::duration<double>(now - start_).count() * sampleRate;
  leastDeficit_ = std::min(leastDeficit_, due - static_cast<double>(frames_));
  if (now - stretchStart_ < stretch) return;
  stretchStart_ = now;
  endStretch(sampleRate);
}

void LostFrameCounter::endStretch(double sampleRate) noexcept {
  const double before = std::exchange(leastDeficitBefore_, leastDeficit_);
  const double growth = leastDeficit_ - before;
  leastDeficit_ = std::numeric_limits<double>::infinity();
  if (!std::exchange(hasBefore_, true) || std::abs(growth) <= clockDifference * sampleRate) return;
  lost_ = std::max(0.0, lost_ + growth);
  count_.store(std::llround(lost_), std::memory_order_relaxed);
}

}  // namespace platform
