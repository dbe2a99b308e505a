#pragma once

#include "VelmoraCore/DSP/Lanes.h"

/// Elementary functions of our own, so that no C library and no processor decides a sample.
///
/// Each is one text for a scalar and for lanes: a reduction to a short interval and the Taylor series there,
/// without branches. Errors are at most 1 ulp of the correctly rounded value in the stated range; the tests
/// hold them to it. Results don't depend on the instruction set, as no step contracts a product and a sum.
namespace velmora::exact {

/// The sum of coefficients[i] * x^i, highest first.
template <class D, int size>
VELMORA_INLINE D polynomial(const D& x, const double (&coefficients)[size]) {
  D sum = coefficients[size - 1];
  for (int i = size - 2; i >= 0; --i) sum = sum * x + coefficients[i];
  return sum;
}

/// Adding this to a double of moderate size leaves the nearest integer in the low bits of the mantissa.
inline constexpr double roundingShift = 6755399441055744.0;  // 1.5 * 2^52

template <class D>
struct SinCos {
  D sin;
  D cos;
};

/// Sine and cosine of x in radians, |x| <= 100000, in double precision.
template <class D>
VELMORA_INLINE SinCos<D> sinCos(const D& x) {
  // pi / 2 in three pieces of 33 bits and a rest: the products with small whole numbers are exact.
  constexpr double halfPi1 = 0x1.921fb544p0;
  constexpr double halfPi2 = 0x1.0b4611a6p-34;
  constexpr double halfPi3 = 0x1.3198a2e037073p-69;
  constexpr double sine[] = {-1.0 / 6,        1.0 / 120,        -1.0 / 5040,          1.0 / 362880,
                             -1.0 / 39916800, 1.0 / 6227020800, -1.0 / 1307674368000, 1.0 / 355687428096000};
  constexpr double cosine[] = {1.0 / 24,        -1.0 / 720,         1.0 / 40320,         -1.0 / 3628800,
                               1.0 / 479001600, -1.0 / 87178291200, 1.0 / 20922789888000};

  const D shifted = x * 0x1.45f306dc9c883p-1 + roundingShift;  // 2 / pi
  const D quadrant = shifted - roundingShift;
  const D coarse = x - quadrant * halfPi1;
  const D fine = quadrant * halfPi2;
  const D y = coarse - fine;
  const D rest = ((coarse - y) - fine) - quadrant * halfPi3;

  const D z = y * y;
  const D s = y + (y * z * polynomial(z, sine) + rest * (1.0 - z * 0.5));
  const D half = z * 0.5;
  const D main = 1.0 - half;
  const D c = main + (((1.0 - main) - half) + (z * z * polynomial(z, cosine) - y * rest));

  const auto turns = bitsOf(shifted);
  const auto isSwapped = (turns & 1) == 1;
  const auto sineSign = (turns & 2) << 62;
  const auto cosineSign = ((turns + 1) & 2) << 62;
  return {doubleOfBits(bitsOf(select(isSwapped, c, s)) ^ sineSign),
          doubleOfBits(bitsOf(select(isSwapped, s, c)) ^ cosineSign)};
}

/// Two to the power of the whole number that `shifted` - `roundingShift` is, for normal results.
template <class D>
VELMORA_INLINE D powerOfTwo(const D& shifted) {
  return doubleOfBits((bitsOf(shifted) << 52) + bitsOf(D(1.0)));
}

/// exp(x) for -700 <= x <= 700 in double precision.
template <class D>
VELMORA_INLINE D exp(const D& x) {
  constexpr double log2High = 0x1.62e42fefap-1;
  constexpr double log2Low = 0x1.cf79abc9e3b3ap-40;
  constexpr double series[] = {1.0 / 2,       1.0 / 6,        1.0 / 24,        1.0 / 120,
                               1.0 / 720,     1.0 / 5040,     1.0 / 40320,     1.0 / 362880,
                               1.0 / 3628800, 1.0 / 39916800, 1.0 / 479001600, 1.0 / 6227020800};
  const D shifted = x * 0x1.71547652b82fep0 + roundingShift;  // 1 / log(2)
  const D power = shifted - roundingShift;
  const D coarse = x - power * log2High;
  const D fine = power * log2Low;
  const D r = coarse - fine;
  const D rest = (coarse - r) - fine;
  return (1.0 + (r + (r * r * polynomial(r, series) + rest))) * powerOfTwo(shifted);
}

/// exp(x) - 1 for |x| <= 40, to a relative error of 1e-10: enough for a result in single precision.
template <class D>
VELMORA_INLINE D expMinusOne(const D& x) {
  constexpr double series[] = {1.0,       1.0 / 2,    1.0 / 6,     1.0 / 24,     1.0 / 120,
                               1.0 / 720, 1.0 / 5040, 1.0 / 40320, 1.0 / 362880, 1.0 / 3628800};
  const D shifted = x * 0x1.71547652b82fep0 + roundingShift;
  const D r = x - (shifted - roundingShift) * 0x1.62e42fefa39efp-1;  // log(2)
  const D scale = powerOfTwo(shifted);
  return scale * (r * polynomial(r, series)) + (scale - 1.0);
}

/// sin(x) in single precision, for |x| <= 8.
template <class F>
VELMORA_INLINE F sinSingle(const F& x) {
  using D = decltype(widened(x));
  constexpr double series[] = {1.0,          -1.0 / 6,        1.0 / 120,          -1.0 / 5040,
                               1.0 / 362880, -1.0 / 39916800, 1.0 / 6227020800.0, -1.0 / 1307674368000.0};
  const D wide = widened(x);
  const D shifted = wide * 0x1.45f306dc9c883p-2 + roundingShift;  // 1 / pi
  const D r = wide - (shifted - roundingShift) * 0x1.921fb54442d18p1;
  const D sine = r * polynomial(r * r, series);
  return narrowed(doubleOfBits(bitsOf(sine) ^ (bitsOf(shifted) << 63)));  // half turns change the sign
}

/// tanh(x) in single precision, for every x that is a number.
template <class F>
VELMORA_INLINE F tanhSingle(const F& x) {
  using D = decltype(widened(x));
  const D wide = widened(x);
  const D low = select(wide < D(-10.0), D(-10.0), wide);  // tanh(10) rounds to 1
  const D bounded = select(low > D(10.0), D(10.0), low);
  const D e = expMinusOne(bounded + bounded);
  return narrowed(e / (e + 2.0));
}

/// 2^x in single precision, for -126 <= x < 128.
template <class F>
VELMORA_INLINE F exp2Single(const F& x) {
  using D = decltype(widened(x));
  const D wide = widened(x);
  const D shifted = wide + roundingShift;
  const D r = (wide - (shifted - roundingShift)) * 0x1.62e42fefa39efp-1;
  constexpr double series[] = {1.0,       1.0,        1.0 / 2,     1.0 / 6,      1.0 / 24,     1.0 / 120,
                               1.0 / 720, 1.0 / 5040, 1.0 / 40320, 1.0 / 362880, 1.0 / 3628800};
  return narrowed(polynomial(r, series) * powerOfTwo(shifted));
}

// The scalar functions that everything but the lane code calls.
float sin(float x) noexcept;
float tanh(float x) noexcept;
float exp2(float x) noexcept;
double sin(double x) noexcept;
double cos(double x) noexcept;
double exp(double x) noexcept;

}  // namespace velmora::exact
