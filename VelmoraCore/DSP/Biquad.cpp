#include "VelmoraCore/DSP/Biquad.h"

#include <algorithm>

#include "VelmoraCore/DSP/BiquadDesign.h"

namespace velmora {

namespace {

BiquadDesign<double> design(float cutoff, float q, float sampleRate) noexcept {
  const auto rate = static_cast<double>(std::max(sampleRate, 1.0F));
  const double frequency = std::min(rate * 0.499, static_cast<double>(std::max(cutoff, 1.0F)));
  return {frequency, static_cast<double>(std::max(q, 0.05F)), rate};
}

void store(Biquad& filter, float b0, float b1, float b2, const BiquadDesign<double>& poles) noexcept {
  filter.b0 = b0;
  filter.b1 = b1;
  filter.b2 = b2;
  filter.a1 = poles.a1();
  filter.a2 = poles.a2();
}

}  // namespace

void Biquad::setLowPass(float cutoff, float q, float sampleRate) noexcept {
  const auto form = design(cutoff, q, sampleRate);
  store(*this, form.lowPassB0(), form.lowPassB1(), form.lowPassB0(), form);
}

void Biquad::setHighPass(float cutoff, float q, float sampleRate) noexcept {
  const auto form = design(cutoff, q, sampleRate);
  store(*this, form.highPassB0(), form.highPassB1(), form.highPassB0(), form);
}

void Biquad::setBandPass(float cutoff, float q, float sampleRate) noexcept {
  const auto form = design(cutoff, q, sampleRate);
  store(*this, form.bandPassB0(), 0, -form.bandPassB0(), form);
}

}  // namespace velmora
