#include <bit>
#include <cstdint>
#include <gtest/gtest.h>

#include "VelmoraCore/DSP/WaveformShapes.h"

namespace velmora {
namespace {

/// Phases from 0 to 1, every so many floats, and all those next to a half, where rounding decides on
/// which side of the step they are.
template <class Check>
void forPhases(const Check& check) {
#ifdef VELMORA_SANITIZED
  constexpr std::uint32_t stride = 1021;
#else
  constexpr std::uint32_t stride = 13;
#endif
  const auto half = std::bit_cast<std::uint32_t>(0.5F), end = std::bit_cast<std::uint32_t>(1.0F);
  for (auto bits = std::bit_cast<std::uint32_t>(0x1p-6F); bits < end; bits += stride)
    check(std::bit_cast<float>(bits));
  for (std::uint32_t bits = half - 100; bits < half + 100; ++bits) check(std::bit_cast<float>(bits));
}

template <Waveform waveform>
void expectPlainAwayFromSteps() {
  for (const float d : {0.0F, 1e-5F, 1e-4F, 0.0101F, 0.2499F, 0.5F}) {
    std::int64_t nearCount = 0, count = 0, wrongCount = 0;
    forPhases([&](float p) {
      const bool isNear = shapes::isNearStep<waveform>(p, d);
      const bool isPlain = shapes::shape<waveform>(p, d) == shapes::plain<waveform>(p);
      ++count;
      nearCount += isNear;
      wrongCount += !isNear && !isPlain;
    });
    EXPECT_EQ(wrongCount, 0) << d;
    if (d < 0.1F) {
      EXPECT_LT(nearCount, count / 8) << d << ": else nothing is saved";
    }
  }
}

TEST(WaveformShapesTest, ASawIsPlainAwayFromItsStep) { expectPlainAwayFromSteps<Waveform::saw>(); }
TEST(WaveformShapesTest, ASquareIsPlainAwayFromItsSteps) { expectPlainAwayFromSteps<Waveform::square>(); }

}  // namespace
}  // namespace velmora
