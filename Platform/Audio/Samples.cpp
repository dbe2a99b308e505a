#include "Platform/Audio/Samples.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "Platform/Audio/VectorClones.h"

namespace platform {
namespace {

constexpr int stretch = 64;  // frames between two looks at a result, so that the loops over it run in vectors

/// The bits without the sign grow with the magnitude, and integers may be compared in any order.
std::int32_t magnitudeBits(float sample) { return std::bit_cast<std::int32_t>(sample) & 0x7fffffff; }

PLATFORM_VECTOR_CLONES
std::int32_t largestMagnitudeBits(const float* samples, int frameCount) noexcept {
  std::int32_t bits = 0;
  for (int n = 0; n < frameCount; ++n) bits = std::max(bits, magnitudeBits(samples[n]));
  return bits;
}

}  // namespace

bool isSilent(const float* samples, int frameCount) noexcept {
  if (frameCount > 0 && samples[0] != 0) return false;
  for (int start = 0; start < frameCount; start += stretch) {
    const int end = std::min(start + stretch, frameCount);
    std::int32_t bits = 0;
    for (int n = start; n < end; ++n) bits |= magnitudeBits(samples[n]);
    if (bits != 0) return false;
  }
  return true;
}

float peak(const float* samples, int frameCount) noexcept {
  return std::bit_cast<float>(largestMagnitudeBits(samples, frameCount));
}

}  // namespace platform
