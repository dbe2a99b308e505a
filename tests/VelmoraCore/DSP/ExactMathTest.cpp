#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
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

/// Holds all floats from `from` to below `to` to one unit of the last place of the double function, rounded.
template <class Function, class Expected>
void expectWithinOneUlp(float from, float to, Function function, Expected expected) {
  const auto search = [=](std::uint32_t first, std::uint32_t last) {
    std::pair<std::int64_t, float> worst;
    for (std::uint32_t bits = first; bits < last; bits += stride) {
      const float x = std::bit_cast<float>(bits);
      const std::int64_t ulps = ulpsApart(function(x), static_cast<float>(expected(double{x})));
      if (ulps > worst.first) worst = {ulps, x};
    }
    return worst;
  };
  const auto first = std::bit_cast<std::uint32_t>(from), last = std::bit_cast<std::uint32_t>(to);
  auto half = std::async(std::launch::async, search, first, first + (last - first) / 2);
  const auto [ulps, x] = std::max(search(first + (last - first) / 2, last), half.get());
  EXPECT_LE(ulps, 1) << "at " << x;
}

const auto itself = [](double x) { return x; };

TEST(ExactMathTest, SineOfOneTurn) {
  const auto ours = [](float x) { return exact::sin(x); };
  // Below, the sine differs from its argument by less than the last place.
  expectWithinOneUlp(0, 0x1p-13F, ours, itself);
  expectWithinOneUlp(0x1p-13F, 6.2831855F, ours, [](double x) { return std::sin(x); });
  EXPECT_EQ(exact::sin(-1.0F), -exact::sin(1.0F));
}

TEST(ExactMathTest, HyperbolicTangent) {
  const auto theirs = [](double x) { return std::tanh(x); };
  expectWithinOneUlp(
      0, 0x1p-13F, [](float x) { return exact::tanh(x); }, itself);
  expectWithinOneUlp(
      0x1p-13F, 10, [](float x) { return exact::tanh(x); }, theirs);
  expectWithinOneUlp(
      0x1p-13F, 10, [](float x) { return -exact::tanh(-x); }, theirs);
  for (const float large : {10.0F, 88.0F, 1e30F, std::numeric_limits<float>::infinity()})
    EXPECT_TRUE(exact::tanh(large) == 1 && exact::tanh(-large) == -1) << large;
}

TEST(ExactMathTest, PowersOfTwo) {
  const auto theirs = [](double x) { return std::exp2(x); };
  expectWithinOneUlp(
      0x1p-26F, 127.99999F, [](float x) { return exact::exp2(x); }, theirs);
  expectWithinOneUlp(
      0x1p-26F, 126, [](float x) { return exact::exp2(-x); }, [](double x) { return std::exp2(-x); });
  for (const float tiny : {0.0F, -0.0F, 1e-40F, 0x1p-27F, -0x1p-27F}) EXPECT_EQ(exact::exp2(tiny), 1);
}

/// The error of a double against a long double, in units of the double's last place.
double ulpError(double value, long double expected) {
  const double rounded = std::abs(static_cast<double>(expected));
  const long double place = std::nextafter(rounded, HUGE_VAL) - rounded;
  return static_cast<double>(std::abs(static_cast<long double>(value) - expected) / place);
}

TEST(ExactMathTest, DoublesOfTheFilterAndEnvelopeDesigns) {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> angles(0, 3.2), exponents(-700, 700), small(-1, 0);
  double worst = 0;
  const auto note = [&](double value, long double expected) {
    worst = std::max(worst, ulpError(value, expected));
  };
  for (int i = 0; i < 400000; ++i) {
    const double w = i % 2 ? angles(random) : angles(random) * 0x1p-10;
    const double x = i % 2 ? exponents(random) : small(random);
    note(exact::sin(w), std::sin(static_cast<long double>(w)));
    note(exact::cos(w), std::cos(static_cast<long double>(w)));
    note(exact::exp(x), std::exp(static_cast<long double>(x)));
  }
  for (int i = -1000; i < 1000; ++i) {  // where the cosine vanishes
    const double w = std::numbers::pi / 2 + i * 0x1p-52;
    note(exact::cos(w), std::cos(static_cast<long double>(w)));
  }
  EXPECT_LE(worst, 1);
}

}  // namespace
}  // namespace velmora
