#pragma once

#include <complex>
#include <vector>

/// What acousticians measure of a room's impulse response. Times in seconds, levels in dB.
namespace measures {

using Samples = std::vector<float>;

/// Fourier transform in place; the size is a power of two.
void transform(std::vector<std::complex<double>>& values);

double energy(const Samples& samples, double fromSeconds, double sampleRate);
/// Of the two tails from `fromSeconds` on: -1...1.
double correlation(const Samples& a, const Samples& b, double fromSeconds, double sampleRate);
/// The share of samples beyond one standard deviation in 20 ms round `seconds`, relative to noise (Abel &
/// Huang 2006).
double echoDensity(const Samples& samples, double seconds, double sampleRate);
/// The time to fall by 60 dB in the octave round `frequency`, from the slope of the backward integral between
/// -5 and -35 dB, and from that of the late rest between -35 and -55 dB.
struct DecayTime {
  double seconds, lateSeconds;
};
DecayTime decayTime(const Samples& samples, double frequency, double sampleRate);
/// How far the strongest spectral line of the tail from `fromSeconds` on stands above the median of its 100
/// Hz.
double strongestLine(const Samples& samples, double fromSeconds, double sampleRate);

}  // namespace measures
