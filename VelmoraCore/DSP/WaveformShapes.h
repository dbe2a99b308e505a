#pragma once

#include "VelmoraCore/DSP/ExactMath.h"
#include "VelmoraCore/DSP/Lanes.h"
#include "VelmoraCore/DSP/Oscillator.h"

/// The shapes of the oscillators, one text for a scalar and for lanes: phase p in cycles, increment d per
/// sample.
namespace velmora::shapes {

/// The correction that rounds a falling unit step of two at p = 0 over two samples.
template <class F>
VELMORA_INLINE F polyBLEP(const F& p, const F& d) {
  const auto isAfterStep = p < d;
  const auto isBeforeStep = p > 1.0F - d;
  const F t = select(isAfterStep, p, p + -1.0F) / d;
  const F after = (t + t) - t * t + -1.0F;
  const F before = t + (t + t * t) + 1.0F;
  return onlyWhere(d > 0.0F, select(isAfterStep, after, onlyWhere(isBeforeStep, before)));
}

/// A phase moved on by d, kept below 1.
template <class F>
VELMORA_INLINE F advanced(const F& p, const F& d) {
  const F next = p + d;
  return select(next >= 1.0F, next + -1.0F, next);
}

/// The output of one waveform.
template <Waveform waveform, class F>
VELMORA_INLINE F shape(const F& p, const F& d) {
  if constexpr (waveform == Waveform::sine) {
    return exact::sinSingle(p * F(radiansPerCycle));
  } else if constexpr (waveform == Waveform::triangle) {
    return select(p < 0.5F, p * 4.0F + -1.0F, 3.0F - p * 4.0F);
  } else if constexpr (waveform == Waveform::saw) {
    return (p + p + -1.0F) - polyBLEP(p, d);
  } else {
    const F sign = select(p < 0.5F, F(1.0F), F(-1.0F));
    const F half = p + 0.5F;
    const F q = select(half >= 1.0F, half + -1.0F, half);
    return sign + polyBLEP(p, d) - polyBLEP(q, d);
  }
}

}  // namespace velmora::shapes
