#pragma once

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

/// Signals that go into the units under test, and what is read off those that come out.
namespace signals {

using Samples = std::vector<float>;

inline Samples noise(int frameCount, unsigned seed = 1, float level = 0.5F) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> distribution(-level, level);
  Samples samples(static_cast<std::size_t>(frameCount));
  for (auto& sample : samples) sample = distribution(random);
  return samples;
}

inline Samples impulse(int frameCount) {
  Samples samples(static_cast<std::size_t>(frameCount));
  samples[0] = 1;
  return samples;
}

/// The gain in dB that an impulse response has at `frequency`.
inline double gainDB(const Samples& response, double frequency, double sampleRate) {
  std::complex<double> sum = 0;
  for (std::size_t n = 0; n < response.size(); ++n) {
    sum += std::polar(static_cast<double>(response[n]),
                      -2 * std::numbers::pi * frequency / sampleRate * static_cast<double>(n));
  }
  return 20 * std::log10(std::abs(sum));
}

}  // namespace signals
