#pragma once

#include "VelmoraCore/DSP/ExactMath.h"
#include "VelmoraCore/DSP/Lanes.h"
#include "VelmoraCore/DSP/Oscillator.h"

/// The shapes of the oscillators, one text for a scalar and for lanes: phase p in cycles, increment d per
/// sample.
namespace velmora::shapes {

/// What is known of the increments. Below `lowIncrement` no phase is near both edges of a square at once,
/// which saves work and changes no bit.
enum class Range : std::uint8_t { any, low };
inline constexpr float lowIncrement = 0.25F;

/// The correction that rounds a step over two samples: `after` is the phase where the step lies behind,
/// `before` where it lies ahead, each in cycles from the step at 0 or to the step at 1.
template <class F>
VELMORA_INLINE F polyBLEP(const F& after, const F& before, const F& d) {
  const auto isAfterStep = after < d;
  const auto isBeforeStep = before > 1.0F - d;
  const F t = select(isAfterStep, after, before + -1.0F) / d;
  const F rising = (t + t) - t * t + -1.0F;
  const F falling = t + (t + t * t) + 1.0F;
  return onlyWhere(d > 0.0F, select(isAfterStep, rising, onlyWhere(isBeforeStep, falling)));
}
template <class F>
VELMORA_INLINE F polyBLEP(const F& p, const F& d) {
  return polyBLEP(p, p, d);
}

/// A square: one step up at 0 and one down at a half, which the phase q, half a cycle ahead, meets at 0.
template <Range range, class F>
VELMORA_INLINE F square(const F& p, const F& d) {
  const F half = p + 0.5F;
  const F q = select(half >= 1.0F, half + -1.0F, half);
  const auto isFirstHalf = p < 0.5F;
  const F sign = select(isFirstHalf, F(1.0F), F(-1.0F));
  if constexpr (range == Range::any) {
    return sign + polyBLEP(p, d) - polyBLEP(q, d);
  } else {
    // The step behind is the one that began this half, the step ahead the one that ends it: one correction,
    // whose sign is the half's behind a step and its opposite ahead of one.
    const F behind = select(isFirstHalf, p, q);
    const F ahead = select(isFirstHalf, q, p);
    const F correction = polyBLEP(behind, ahead, d);
    return sign + select((behind < d), sign * correction, F(0.0F) - sign * correction);
  }
}

/// A phase moved on by d, kept below 1.
template <class F>
VELMORA_INLINE F advanced(const F& p, const F& d) {
  const F next = p + d;
  return select(next >= 1.0F, next + -1.0F, next);
}

/// The output of one waveform.
template <Waveform waveform, Range range, class F>
VELMORA_INLINE F shape(const F& p, const F& d) {
  if constexpr (waveform == Waveform::sine) {
    return exact::sinSingle(p * F(radiansPerCycle));
  } else if constexpr (waveform == Waveform::triangle) {
    return select(p < 0.5F, p * 4.0F + -1.0F, 3.0F - p * 4.0F);
  } else if constexpr (waveform == Waveform::saw) {
    return (p + p + -1.0F) - polyBLEP(p, d);
  } else {
    return square<range>(p, d);
  }
}

}  // namespace velmora::shapes
