#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <gtest/gtest.h>
#include <limits>
#include <random>

#include "VelmoraCore/DSP/ExactMath.h"

namespace velmora {
namespace {

#ifdef VELMORA_SANITIZED
constexpr std::uint32_t stride = 4099;  // every float in plain builds, a sample of them under a sanitizer
#else
constexpr std::uint32_t stride = 1;
#endif

/// The distance in units of the last place of two floats of the same sign.
std::int64_t ulpsApart(float a, float b) {
  return std::abs(static_cast<std::int64_t>(std::bit_cast<std::int32_t>(a)) - std::bit_cast<std::int32_t>(b));
}

struct Worst {
  std::int64_t ulps = 0;
  float at = 0;
};

/// The worst error over all floats whose bits lie in [from, to), against the double function rounded.
template <class Function, class Expected>
Worst worstOver(float from, float to, Function function, Expected expected) {
  const auto search = [=](std::uint32_t first, std::uint32_t last) {
    Worst worst;
    for (std::uint32_t bits = first; bits < last; bits += stride) {
      const float x = std::bit_cast<float>(bits);
      const std::int64_t ulps = ulpsApart(function(x), static_cast<float>(expected(x)));
      if (ulps > worst.ulps) worst = {ulps, x};
    }
    return worst;
  };
  const auto first = std::bit_cast<std::uint32_t>(from), last = std::bit_cast<std::uint32_t>(to);
  const std::uint32_t middle = first + (last - first) / 2;
  auto half = std::async(std::launch::async, search, first, middle);
  const Worst upper = search(middle, last);
  const Worst lower = half.get();
  return lower.ulps > upper.ulps ? lower : upper;
}

#define EXPECT_WITHIN_ONE_ULP(worst)       \
  do {                                     \
    const Worst w = worst;                 \
    EXPECT_LE(w.ulps, 1) << "at " << w.at; \
  } while (false)

const auto itself = [](float x) { return static_cast<double>(x); };

TEST(ExactMathTest, SineOfOneTurn) {
  const auto ours = [](float x) { return exact::sin(x); };
  // Below, the sine differs from its argument by less than the last place.
  EXPECT_WITHIN_ONE_ULP(worstOver(0, 0x1p-13F, ours, itself));
  EXPECT_WITHIN_ONE_ULP(worstOver(0x1p-13F, 6.2831855F, ours, [](float x) { return std::sin(double{x}); }));
  EXPECT_EQ(exact::sin(-1.0F), -exact::sin(1.0F));
}

TEST(ExactMathTest, HyperbolicTangent) {
  const auto ours = [](float x) { return exact::tanh(x); };
  const auto negated = [](float x) { return -exact::tanh(-x); };
  const auto theirs = [](float x) { return std::tanh(double{x}); };
  EXPECT_WITHIN_ONE_ULP(worstOver(0, 0x1p-13F, ours, itself));
  EXPECT_WITHIN_ONE_ULP(worstOver(0x1p-13F, 10, ours, theirs));
  EXPECT_WITHIN_ONE_ULP(worstOver(0x1p-13F, 10, negated, theirs));
  for (const float large : {10.0F, 88.0F, 1e30F, std::numeric_limits<float>::infinity()}) {
    EXPECT_EQ(exact::tanh(large), 1);
    EXPECT_EQ(exact::tanh(-large), -1);
  }
}

TEST(ExactMathTest, PowersOfTwo) {
  const auto up = [](float x) { return exact::exp2(x); };
  const auto down = [](float x) { return exact::exp2(-x); };
  EXPECT_WITHIN_ONE_ULP(worstOver(0x1p-26F, 127.99999F, up, [](float x) { return std::exp2(double{x}); }));
  EXPECT_WITHIN_ONE_ULP(worstOver(0x1p-26F, 126, down, [](float x) { return std::exp2(-double{x}); }));
  for (const float tiny : {0.0F, -0.0F, 1e-40F, 0x1p-27F, -0x1p-27F}) EXPECT_EQ(exact::exp2(tiny), 1);
}

/// The error of a double against a long double, in units of the double's last place.
double ulpError(double value, long double expected) {
  const double rounded = static_cast<double>(expected);
  const double place = std::nextafter(std::abs(rounded), HUGE_VAL) - std::abs(rounded);
  return static_cast<double>(std::abs(static_cast<long double>(value) - expected) /
                             static_cast<long double>(place));
}

TEST(ExactMathTest, DoublesOfTheFilterAndEnvelopeDesigns) {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> angles(0, 3.2), exponents(-700, 700), small(-1, 0);
  double worst[4] = {};
  for (int i = 0; i < 400000; ++i) {
    const double w = i % 2 ? angles(random) : angles(random) * 0x1p-10;
    const double x = i % 2 ? exponents(random) : small(random);
    worst[0] = std::max(worst[0], ulpError(exact::sin(w), std::sin(static_cast<long double>(w))));
    worst[1] = std::max(worst[1], ulpError(exact::cos(w), std::cos(static_cast<long double>(w))));
    worst[2] = std::max(worst[2], ulpError(exact::exp(x), std::exp(static_cast<long double>(x))));
  }
  const double halfPi = 1.5707963267948966;
  for (int i = -1000; i < 1000; ++i) {  // where the cosine vanishes
    const double w = halfPi + i * 0x1p-52;
    worst[3] = std::max(worst[3], ulpError(exact::cos(w), std::cos(static_cast<long double>(w))));
  }
  for (const double error : worst) EXPECT_LE(error, 1);
}

}  // namespace
}  // namespace velmora
