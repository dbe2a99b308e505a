#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

/// What acousticians measure of a room's impulse response. Times in seconds, levels in dB.
namespace measures {

using Samples = std::vector<float>;
using Spectrum = std::vector<std::complex<double>>;

/// With as much silence behind, into which a filter without phase may ring.
inline Spectrum padded(const Samples& samples) {
  Spectrum spectrum(2 * std::bit_ceil(samples.size()));
  std::ranges::copy(samples, spectrum.begin());
  return spectrum;
}

inline Samples tail(const Samples& samples, double fromSeconds, double sampleRate) {
  return {samples.begin() + std::lround(fromSeconds * sampleRate), samples.end()};
}

/// The energy that is still to come, in dB of the whole.
inline std::vector<double> backwardIntegral(const Spectrum& band, std::size_t size) {
  std::vector<double> sums(size);
  double sum = 0;
  for (std::size_t n = size; n-- > 0;) sums[n] = sum += std::norm(band[n]);
  for (auto& value : sums) value = 10 * std::log10(std::max(value / sum, 1e-30));
  return sums;
}

/// Fourier transform in place; the size is a power of two.
inline void transform(Spectrum& values) {
  const std::size_t half = values.size() / 2;
  if (half == 0) return;
  Spectrum even(half), odd(half);
  for (std::size_t k = 0; k < half; ++k) even[k] = values[2 * k], odd[k] = values[2 * k + 1];
  transform(even);
  transform(odd);
  const auto turn = std::polar(1.0, -std::numbers::pi / static_cast<double>(half));
  std::complex<double> turned = 1;
  for (std::size_t k = 0; k < half; ++k, turned *= turn) {
    values[k] = even[k] + turned * odd[k];
    values[k + half] = even[k] - turned * odd[k];
  }
}

inline double energy(const Samples& samples, double fromSeconds, double sampleRate) {
  double sum = 0;
  for (const float x : tail(samples, fromSeconds, sampleRate))
    sum += static_cast<double>(x) * static_cast<double>(x);
  return sum;
}

/// Of the two tails from `fromSeconds` on: -1...1.
inline double correlation(const Samples& a, const Samples& b, double fromSeconds, double sampleRate) {
  const auto x = tail(a, fromSeconds, sampleRate), y = tail(b, fromSeconds, sampleRate);
  double product = 0;
  for (std::size_t n = 0; n < x.size(); ++n) product += static_cast<double>(x[n]) * static_cast<double>(y[n]);
  return product / std::sqrt(energy(x, 0, sampleRate) * energy(y, 0, sampleRate));
}

/// The share of samples beyond one standard deviation in 20 ms round `seconds`, relative to noise (Abel &
/// Huang 2006).
inline double echoDensity(const Samples& samples, double seconds, double sampleRate) {
  const auto centre = std::lround(seconds * sampleRate), half = std::lround(0.01 * sampleRate);
  const Samples window(samples.begin() + centre - half, samples.begin() + centre + half);
  const double deviation = std::sqrt(energy(window, 0, sampleRate) / static_cast<double>(window.size()));
  const auto beyond =
      std::ranges::count_if(window, [&](float x) { return static_cast<double>(std::abs(x)) > deviation; });
  return static_cast<double>(beyond) / static_cast<double>(window.size()) /
         std::erfc(1 / std::numbers::sqrt2);
}

/// The time to fall by 60 dB in the octave round `frequency`, from the slope of the backward integral between
/// -5 and -35 dB, and from that of the late rest between -35 and -55 dB.
struct DecayTime {
  double seconds, lateSeconds;
};
inline DecayTime decayTime(const Samples& samples, double frequency, double sampleRate) {
  Spectrum band = padded(samples);
  transform(band);
  for (std::size_t k = 0; k < band.size(); ++k) {
    const double hertz = static_cast<double>(k) * sampleRate / static_cast<double>(band.size());
    const double octaves = std::abs(std::log2(std::max(hertz, 1.0) / frequency));
    band[k] = octaves > 0.75
                  ? 0
                  : std::conj(band[k]) * (octaves < 0.25 ? 1 : std::sin((0.75 - octaves) * std::numbers::pi));
  }
  transform(band);
  const auto levels = backwardIntegral(band, samples.size());
  const auto passes = [&](double dB) {
    return std::ranges::find_if(levels, [&](double level) { return level < dB; }) - levels.begin();
  };
  const auto seconds = [&](double fromDB, double toDB) {
    return static_cast<double>(passes(toDB) - passes(fromDB)) / sampleRate * 60 / (fromDB - toDB);
  };
  return {seconds(-5, -35), seconds(-35, -55)};
}

/// How far the strongest spectral line of the tail from `fromSeconds` on stands above the median of its 100
/// Hz.
inline double strongestLine(const Samples& samples, double fromSeconds, double sampleRate) {
  Samples late = tail(samples, fromSeconds, sampleRate);
  late.resize(std::bit_floor(late.size()));
  const auto size = static_cast<double>(late.size());
  Spectrum spectrum(late.begin(), late.end());
  for (std::size_t n = 0; n < spectrum.size(); ++n) {
    spectrum[n] *= 0.5 - 0.5 * std::cos(2 * std::numbers::pi * static_cast<double>(n) / size);
  }
  transform(spectrum);
  double strongest = 0;
  const auto bin = [&](double hertz) { return spectrum.begin() + std::lround(hertz / sampleRate * size); };
  for (double low = 100; low < 10000; low += 100) {
    Spectrum lines(bin(low), bin(low + 100));
    std::ranges::sort(lines, {}, [](const auto& line) { return std::norm(line); });
    strongest =
        std::max(strongest, 20 * std::log10(std::abs(lines.back()) / std::abs(lines[lines.size() / 2])));
  }
  return strongest;
}

}  // namespace measures
