#include "Platform/Audio/GlidingParameter.h"

#include <algorithm>
#include <cmath>

namespace platform {

void GlidingParameter::prepare(double sampleRate) noexcept {
  length_ = std::max(1, static_cast<int>(std::lround(glideSeconds * sampleRate)));
  reset();
}

void GlidingParameter::set(float target) noexcept {
  if (std::isfinite(target)) target_.store(target, std::memory_order_relaxed);
}

void GlidingParameter::beginBlock() noexcept {
  const float target = this->target();
  if (hasStarted_ && target == end_) return;
  step_ = (target - value()) / static_cast<float>(length_);
  remaining_ = hasStarted_ ? length_ : 0;
  end_ = target;
  hasStarted_ = true;
}

float GlidingParameter::next() noexcept {
  skip(1);
  return value();
}

void GlidingParameter::fill(float* values, int frameCount) noexcept {
  const int moving = std::min(frameCount, remaining_);
  for (int n = 0; n < moving; ++n) values[n] = end_ - step_ * static_cast<float>(remaining_ - 1 - n);
  std::fill(values + moving, values + frameCount, end_);
  remaining_ -= moving;
}

void GlidingParameter::skip(int frameCount) noexcept { remaining_ -= std::min(frameCount, remaining_); }

}  // namespace platform
