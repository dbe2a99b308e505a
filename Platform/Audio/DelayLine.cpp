#include "Platform/Audio/DelayLine.h"

#include <algorithm>

namespace platform {

void DelayLine::prepare(int longestDelay) {
  length_ = std::max(longestDelay + chunkFrames, 2 * tailFrames);
  ring_.assign(static_cast<std::size_t>(length_) + tailFrames, 0.0F);
  position_ = 0;
}

void DelayLine::clear() noexcept { std::ranges::fill(ring_, 0.0F); }

const float* DelayLine::read(int delay) const noexcept {
  const int start = position_ - delay;
  return ring_.data() + (start < 0 ? start + length_ : start);
}

void DelayLine::advance(int frameCount) noexcept {
  float* const ring = ring_.data();
  const int end = position_ + frameCount;
  if (end > length_) {
    std::copy(ring + length_, ring + end, ring);
  } else if (position_ < tailFrames) {
    std::copy(ring + position_, ring + std::min(end, tailFrames), ring + length_ + position_);
  }
  position_ = end < length_ ? end : end - length_;
}

}  // namespace platform
