#include "VelmoraCore/DSP/Oscillator.h"

#include <algorithm>
#include <cmath>

#include "VelmoraCore/DSP/WaveformShapes.h"

namespace velmora {

namespace {
constexpr std::string_view storedValues[] = {"sine", "triangle", "saw", "square"};
}

std::string_view storedValue(Waveform waveform) { return storedValues[static_cast<int>(waveform)]; }

std::optional<Waveform> waveform(std::string_view storedValue) {
  for (const Waveform shape : allWaveforms) {
    if (velmora::storedValue(shape) == storedValue) return shape;
  }
  return {};
}

void Oscillator::setFrequency(float frequency, float sampleRate) noexcept {
  phaseIncrement = sampleRate > 0 ? std::clamp(frequency / sampleRate, 0.0F, 0.5F) : 0;
}

void Oscillator::reset(float toPhase) noexcept { phase = toPhase - std::floor(toPhase); }

float Oscillator::nextSample() noexcept {
  const float p = phase;
  phase = shapes::advanced(p, phaseIncrement);
  switch (waveform) {
    case Waveform::sine:
      return shapes::shape<Waveform::sine>(p, phaseIncrement);
    case Waveform::triangle:
      return shapes::shape<Waveform::triangle>(p, phaseIncrement);
    case Waveform::saw:
      return shapes::shape<Waveform::saw>(p, phaseIncrement);
    case Waveform::square:
      return shapes::shape<Waveform::square>(p, phaseIncrement);
  }
  return 0;
}

}  // namespace velmora
