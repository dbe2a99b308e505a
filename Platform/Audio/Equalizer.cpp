#include "Platform/Audio/Equalizer.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace platform {
namespace {

constexpr double frequencies[] = {120, 1000, 8000};
constexpr double bellOctaves = 1;
constexpr int stretchFrames = 1024;
constexpr int bandLag = 4;           // frames
constexpr float inaudible = 1e-25F;  // -500 dB

}  // namespace

void Equalizer::prepare(double sampleRate) noexcept {
  for (std::size_t band = 0; band < bandCount; ++band) {
    const double w0 = 2 * std::numbers::pi * std::min(frequencies[band] / sampleRate, 0.45);
    const double bellDamping = 2 * std::sinh(std::numbers::ln2 / 2 * bellOctaves * w0 / std::sin(w0));
    const double shelfDamping = std::numbers::sqrt2;  // slope 1, for every gain
    prototypes_[band] = {std::tan(w0 / 2),
                         band == static_cast<std::size_t>(Band::mid) ? bellDamping : shelfDamping};
    coefficients_[band] = {};
    designedGains_[band] = 0;
    gains_[band].prepare(sampleRate);
  }
  reset();
}

void Equalizer::reset() noexcept {
  for (auto& gain : gains_) gain.reset();
  states_ = {};
  stretchPosition_ = 0;
}

void Equalizer::setGainDB(Band band, float gainDB) noexcept {
  gains_[static_cast<std::size_t>(band)].set(std::clamp(gainDB, -gainLimitDB, gainLimitDB));
}

Equalizer::Coefficients Equalizer::design(Band band, float gainDB) const noexcept {
  const auto [warped, damping] = prototypes_[static_cast<std::size_t>(band)];
  const double amplitude = std::pow(10.0, static_cast<double>(gainDB) / 40);
  double g = warped, k = damping;
  double input = 1, bandPass = 0, lowPass = 0;  // y = input * x + bandPass * v1 + lowPass * v2
  switch (band) {
    case Band::low:
      g /= std::sqrt(amplitude);
      bandPass = k * (amplitude - 1);
      lowPass = amplitude * amplitude - 1;
      break;
    case Band::mid:
      k /= amplitude;
      bandPass = k * (amplitude * amplitude - 1);
      break;
    case Band::high:
      g *= std::sqrt(amplitude);
      input = amplitude * amplitude;
      bandPass = k * (1 - amplitude) * amplitude;
      lowPass = 1 - amplitude * amplitude;
      break;
  }
  const double a1 = 1 / (1 + g * (g + k)), a2 = g * a1, a3 = g * a2;
  return {static_cast<float>(2 * a1 - 1),
          static_cast<float>(2 * a2),
          static_cast<float>(2 * a3),
          static_cast<float>(input - 1 + bandPass * a2 + lowPass * a3),
          static_cast<float>(bandPass * a1 + lowPass * a2),
          static_cast<float>(input - 1 + lowPass)};
}

template <Equalizer::Band band>
inline float Equalizer::tick(float x, const Coefficients& c, State& s) noexcept {
  const float u = x - s.s2;
  float y = c.input * u + c.output1 * s.s1;
  if constexpr (band == Band::low) y += c.output2 * s.s2;
  const float s1 = c.keep * s.s1 + c.drive1 * u;
  s.s2 = (s.s2 + c.drive1 * s.s1) + c.drive2 * u;
  s.s1 = s1;
  return x + y;
}

/// The three recursions stand side by side, so that the processor runs them at the same time.
inline float Equalizer::cascade(float x, const BandCoefficients& c, BandStates& s) noexcept {
  return tick<Band::high>(tick<Band::mid>(tick<Band::low>(x, c[0], s[0]), c[1], s[1]), c[2], s[2]);
}

bool Equalizer::isResting() const noexcept {
  return std::ranges::all_of(gains_, [](const auto& gain) { return gain.isResting(0); });
}

bool Equalizer::isQuiet() const noexcept {
  return std::ranges::all_of(states_, [](const State& s) { return s.s1 == 0 && s.s2 == 0; });
}

void Equalizer::skip(int frameCount) noexcept {
  for (auto& gain : gains_) {
    gain.beginBlock();
    gain.skip(frameCount);
  }
  passFrames(frameCount % stretchFrames);
}

void Equalizer::process(float* samples, int frameCount) noexcept {
  for (auto& gain : gains_) gain.beginBlock();
  for (int n = 0, count = 0; n < frameCount; n += count) {
    count = std::min(frameCount - n, stretchFrames - stretchPosition_);
    processStretch(samples + n, count);
    passFrames(count);
  }
}

void Equalizer::processStretch(float* samples, int frameCount) noexcept {
  const int done = processGliding(samples, frameCount);
  if (isResting()) {
    states_ = {};
  } else {
    processSteady(samples + done, frameCount - done);
  }
}

/// At the end of each stretch, a state that is far below hearing becomes zero: what flows into an integrator
/// is flushed before its state is, so that the state would stand still at some tiny value and the unit never
/// be quiet.
void Equalizer::passFrames(int frameCount) noexcept {
  stretchPosition_ += frameCount;
  if (stretchPosition_ < stretchFrames) return;
  stretchPosition_ -= stretchFrames;
  for (auto& state : states_) {
    if (std::abs(state.s1) < inaudible && std::abs(state.s2) < inaudible) state = {};
  }
}

/// Returns the number of frames processed: up to the end of the glides or of the block.
int Equalizer::processGliding(float* samples, int frameCount) noexcept {
  const auto isGliding = [](const auto& gain) { return gain.isGliding(); };
  int n = 0;
  for (; n < frameCount && std::ranges::any_of(gains_, isGliding); ++n) {
    for (auto& gain : gains_) gain.skip(1);
    updateCoefficients();
    samples[n] = cascade(samples[n], coefficients_, states_);
  }
  return n;
}

void Equalizer::processSteady(float* samples, int frameCount) noexcept {
  updateCoefficients();
  if (frameCount < 2 * bandLag) {
    for (int n = 0; n < frameCount; ++n) samples[n] = cascade(samples[n], coefficients_, states_);
    return;
  }
  run<Band::low>(samples, 2 * bandLag);
  run<Band::mid>(samples, bandLag);
  runStaggered(samples, frameCount);
  run<Band::mid>(samples + (frameCount - bandLag), bandLag);
  run<Band::high>(samples + (frameCount - 2 * bandLag), 2 * bandLag);
}

template <Equalizer::Band band>
void Equalizer::run(float* samples, int frameCount) noexcept {
  constexpr auto index = static_cast<std::size_t>(band);
  for (int n = 0; n < frameCount; ++n)
    samples[n] = tick<band>(samples[n], coefficients_[index], states_[index]);
}

/// `tick` for the three bands side by side, each so far behind the one before that none waits for another.
/// The same bits, as `output2` is zero where `tick` leaves it out.
void Equalizer::runStaggered(float* samples, int frameCount) noexcept {
  typedef float Bands __attribute__((vector_size(16)));
  const auto bands = [](const auto& all, auto field) -> Bands {
    return Bands{all[0].*field, all[1].*field, all[2].*field, 0};
  };
  const auto& c = coefficients_;
  const Bands keep = bands(c, &Coefficients::keep), drive1 = bands(c, &Coefficients::drive1),
              drive2 = bands(c, &Coefficients::drive2), input = bands(c, &Coefficients::input),
              output1 = bands(c, &Coefficients::output1), output2 = bands(c, &Coefficients::output2);
  Bands s1 = bands(states_, &State::s1), s2 = bands(states_, &State::s2);
  for (int n = 2 * bandLag; n < frameCount; ++n) {
    const Bands x = {samples[n], samples[n - bandLag], samples[n - 2 * bandLag], 0};
    const Bands u = x - s2;
    const Bands y = x + (input * u + output1 * s1 + output2 * s2);
    const Bands risen = keep * s1 + drive1 * u;
    s2 = (s2 + drive1 * s1) + drive2 * u;
    s1 = risen;
    samples[n] = y[0];
    samples[n - bandLag] = y[1];
    samples[n - 2 * bandLag] = y[2];
  }
  for (int band = 0; band < 3; ++band) states_[static_cast<std::size_t>(band)] = {s1[band], s2[band]};
}

void Equalizer::updateCoefficients() noexcept {
  for (std::size_t band = 0; band < bandCount; ++band) {
    const float gain = gains_[band].value();
    if (gain == designedGains_[band]) continue;
    coefficients_[band] = design(static_cast<Band>(band), gain);
    designedGains_[band] = gain;
  }
}

}  // namespace platform
