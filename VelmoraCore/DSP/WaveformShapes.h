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

/// A phase moved on by d, kept below 1.
template <class F>
VELMORA_INLINE F advanced(const F& p, const F& d) {
  const F next = p + d;
  return next - onlyWhere(next >= 1.0F, F(1.0F));
}

/// The correction that rounds a falling step of two at p = 0 over two samples. Phases near the step on either
/// side are never the same, as d is at most a half; without an increment there are none.
template <class F>
VELMORA_INLINE F polyBLEP(const F& p, const F& d) {
  const auto isAfter = p < d;
  const auto isBefore = p > 1.0F - d;
  const F t = (p - onlyWhere(isBefore, F(1.0F))) / d;
  const F after = (t + t) - t * t + -1.0F;
  const F before = t + (t + t * t) + 1.0F;
  return onlyWhere(isAfter, after) + onlyWhere(isBefore, before);
}

/// A square: one step up at 0 and one down at a half, which the phase q, half a cycle ahead, meets at 0.
template <Range range, class F>
VELMORA_INLINE F square(const F& p, const F& d) {
  const F q = advanced(p, F(0.5F));
  const F sign = onlyWhere(p < 0.5F, F(2.0F)) - 1.0F;
  if constexpr (range == Range::any) {
    return sign + polyBLEP(p, d) - polyBLEP(q, d);
  } else {
    // The nearest step behind and the nearest ahead, one of them up and one down. Which is which is told by
    // the order of p and q, not by p < 0.5: just below a half, p + 0.5 rounds up and q has already wrapped.
    const auto isUpBehind = p < q;
    const F direction = onlyWhere(isUpBehind, F(2.0F)) - 1.0F;
    const F behind = select(isUpBehind, p, q);
    const F ahead = select(isUpBehind, q, p);
    const auto isAfter = behind < d;
    const auto isBefore = ahead > 1.0F - d;
    const F t = select(isAfter, behind, ahead - 1.0F) / d;
    const F after = (t + t) - t * t + -1.0F;
    const F before = -1.0F - (t + (t + t * t));
    return sign + direction * (onlyWhere(isAfter, after) + onlyWhere(isBefore, before));
  }
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
