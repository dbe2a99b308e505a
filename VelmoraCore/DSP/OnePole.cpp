#include "VelmoraCore/DSP/OnePole.h"

#include <algorithm>

#include "VelmoraCore/DSP/ExactMath.h"

namespace velmora {

namespace {

float coefficientFor(float cutoff, float sampleRate) noexcept {
  const double rate = static_cast<double>(std::max(sampleRate, 1.0F));
  const double frequency = std::min(rate * 0.5, static_cast<double>(std::max(cutoff, 0.0F)));
  return static_cast<float>(1 - exact::exp(frequency * -6.283185307179586 / rate));
}

}  // namespace

void OnePole::setLowPass(float cutoff, float sampleRate) noexcept {
  mode = Mode::lowPass;
  coefficient = coefficientFor(cutoff, sampleRate);
}

void OnePole::setHighPass(float cutoff, float sampleRate) noexcept {
  mode = Mode::highPass;
  coefficient = coefficientFor(cutoff, sampleRate);
}

}  // namespace velmora
