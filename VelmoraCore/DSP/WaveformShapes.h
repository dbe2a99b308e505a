#pragma once

#include "VelmoraCore/DSP/ExactMath.h"
#include "VelmoraCore/DSP/Lanes.h"
#include "VelmoraCore/DSP/Oscillator.h"

/// The shapes of the oscillators, one text for a scalar and for lanes: phase p in cycles, increment d per
/// sample.
namespace velmora::shapes {

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

/// The waveform without its steps rounded.
template <Waveform waveform, class F>
VELMORA_INLINE F plain(const F& p) {
  if constexpr (waveform == Waveform::sine) {
    return exact::sinSingle(p * F(radiansPerCycle));
  } else if constexpr (waveform == Waveform::triangle) {
    return select(p < 0.5F, p * 4.0F + -1.0F, 3.0F - p * 4.0F);
  } else if constexpr (waveform == Waveform::saw) {
    return p + p + -1.0F;
  } else {
    return onlyWhere(p < 0.5F, F(2.0F)) - 1.0F;
  }
}

/// The output of one waveform. A square has one step up at 0 and one down at a half, which the phase half a
/// cycle ahead meets at 0.
template <Waveform waveform, class F>
VELMORA_INLINE F shape(const F& p, const F& d) {
  if constexpr (waveform == Waveform::saw) {
    return plain<waveform>(p) - polyBLEP(p, d);
  } else if constexpr (waveform == Waveform::square) {
    return plain<waveform>(p) + polyBLEP(p, d) - polyBLEP(advanced(p, F(0.5F)), d);
  } else {
    return plain<waveform>(p);
  }
}

template <Waveform waveform>
inline constexpr bool hasSteps = waveform == Waveform::saw || waveform == Waveform::square;

/// Whether a phase may lie within a sample of a step. Where it doesn't, the shape is the plain waveform.
template <Waveform waveform, class F>
VELMORA_INLINE auto isNearStep(const F& p, const F& d) {
  if constexpr (waveform == Waveform::saw) {
    return (p < d) | (p > 1.0F - d);
  } else {
    const F reach = onlyWhere(d > 0.0F, d + 0x1p-20F);  // more than what moving by half a cycle rounds away
    const F q = p - onlyWhere(p >= 0.5F, F(0.5F));
    return (q < reach) | (q > 0.5F - reach);
  }
}

}  // namespace velmora::shapes
