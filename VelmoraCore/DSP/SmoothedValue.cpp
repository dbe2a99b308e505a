#include "VelmoraCore/DSP/SmoothedValue.h"

#include <cmath>

#include "VelmoraCore/DSP/ExactMath.h"

namespace velmora {

void SmoothedValue::setSmoothingTime(float seconds, float sampleRate) noexcept {
  const double frames = static_cast<double>(seconds) * static_cast<double>(sampleRate);
  coefficient = frames > 0 ? static_cast<float>(1 - exact::exp(-1 / frames)) : 1;
}

float SmoothedValue::nextSample() noexcept {
  const float next = current + coefficient * (target - current);
  const float size = std::abs(target);
  const float tolerance = size >= 1 ? size * 0.000001F : 0.000001F;
  // A ramp that single precision can no longer advance has arrived too.
  const bool hasArrived = std::abs(target - current) <= tolerance || next == current;
  current = hasArrived ? target : next;
  return current;
}

}  // namespace velmora
