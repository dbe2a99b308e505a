#pragma once

#include "VelmoraCore/DSP/ExactMath.h"

namespace velmora {

/// What the cookbook's filter designs share, in its symbols; one text for a scalar and for lanes.
template <class D>
struct BiquadDesign {
  D cosine;   ///< of the angular frequency w
  D alpha;    ///< sin(w) / 2q
  D inverse;  ///< 1 / a0

  /// Frequency and rate in hertz; everything is clamped before.
  BiquadDesign(const D& frequency, double q, double rate) {
    const D w = frequency * 6.283185307179586 / rate;
    const auto parts = exact::sinCos(w);
    cosine = parts.cos;
    alpha = parts.sin / (q + q);
    inverse = 1.0 / (alpha + 1.0);
  }

  auto a1() const { return narrowed(cosine * -2.0 * inverse); }
  auto a2() const { return narrowed((1.0 - alpha) * inverse); }
  auto lowPassB0() const { return narrowed((1.0 - cosine) * 0.5 * inverse); }
  auto lowPassB1() const { return narrowed((1.0 - cosine) * inverse); }
  auto highPassB0() const { return narrowed((1.0 + cosine) * 0.5 * inverse); }
  auto highPassB1() const { return narrowed((-1.0 - cosine) * inverse); }
  auto bandPassB0() const { return narrowed(alpha * inverse); }
};

}  // namespace velmora
