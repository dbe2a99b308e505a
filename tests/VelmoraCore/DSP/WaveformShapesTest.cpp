#include <bit>
#include <cstdint>
#include <gtest/gtest.h>

#include "VelmoraCore/DSP/WaveformShapes.h"

namespace velmora {
namespace {

TEST(WaveformShapesTest, ASquareOfLowFrequencyIsTheSameInEveryBit) {
#ifdef VELMORA_SANITIZED
  constexpr std::uint32_t stride = 1021;
#else
  constexpr std::uint32_t stride = 1;
#endif
  const auto first = std::bit_cast<std::uint32_t>(0x1p-6F), last = std::bit_cast<std::uint32_t>(1.0F);
  for (const float d : {0.0F, 1e-4F, 0.0101F, 0.2499F}) {
    for (std::uint32_t bits = first; bits < last; bits += stride) {
      const float p = std::bit_cast<float>(bits);
      const float low = shapes::square<shapes::Range::low>(p, d),
                  any = shapes::square<shapes::Range::any>(p, d);
      if (low != any) FAIL() << "at phase " << p << ", increment " << d << ": " << low << " for " << any;
    }
    // The phases next to a half, where rounding decides which side of the step they are on.
    for (std::uint32_t bits = std::bit_cast<std::uint32_t>(0.5F) - 100;
         bits < std::bit_cast<std::uint32_t>(0.5F) + 100; ++bits) {
      const float p = std::bit_cast<float>(bits);
      ASSERT_EQ(shapes::square<shapes::Range::low>(p, d), shapes::square<shapes::Range::any>(p, d)) << p;
    }
  }
}

}  // namespace
}  // namespace velmora
