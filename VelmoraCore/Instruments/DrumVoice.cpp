#include "VelmoraCore/Instruments/DrumVoice.h"

#include <algorithm>

#include "VelmoraCore/DSP/ExactMath.h"
#include "VelmoraCore/DSP/Oscillator.h"

namespace velmora {

namespace {

enum class NoiseFilter : std::uint8_t { none, highPass, bandPass };

/// Time constants in seconds, 0 where the sound has no such envelope; the noise filter in hertz.
struct DrumShape {
  DrumSound sound;
  float env1;
  float env2;
  float pitchEnv;
  NoiseFilter filter;
  float cutoff;
  float q;
};

constexpr DrumShape shapes[] = {
    {DrumSound::kick, 0.07F, 0.0015F, 0.02F, NoiseFilter::none, 0, 0},
    {DrumSound::rim, 0.012F, 0.002F, 0, NoiseFilter::none, 0, 0},
    {DrumSound::snare, 0.03F, 0.035F, 0, NoiseFilter::highPass, 1200, 0.7F},
    {DrumSound::clap, 0.004F, 0.055F, 0, NoiseFilter::bandPass, 1400, 0.8F},
    {DrumSound::closedHat, 0.012F, 0, 0, NoiseFilter::bandPass, 8000, 1},
    {DrumSound::lowTom, 0.06F, 0, 0.06F, NoiseFilter::none, 0, 0},
    {DrumSound::openHat, 0.07F, 0, 0, NoiseFilter::bandPass, 8000, 1},
    {DrumSound::perc, 0.028F, 0, 0, NoiseFilter::none, 0, 0},
};

constexpr float clapBurstSeconds = 0.01F;
constexpr float silence = 0.00001F;

const DrumShape& shapeOf(DrumSound sound) noexcept {
  return *std::find_if(std::begin(shapes), std::end(shapes),
                       [sound](const DrumShape& s) { return s.sound == sound; });
}

float decayPerSample(float seconds, float sampleRate) noexcept {
  return static_cast<float>(
      exact::exp(-1 / (static_cast<double>(sampleRate) * static_cast<double>(seconds))));
}

float sine(float phase) noexcept { return exact::sin(phase * radiansPerCycle); }

void advance(float& phase, float increment) noexcept {
  phase += increment;
  if (phase >= 1) phase -= 1;
}

/// Whether the tail of the sound is its noise, so that the second envelope decides its end.
constexpr bool endsWithNoise(DrumSound sound) {
  return sound == DrumSound::snare || sound == DrumSound::clap;
}

}  // namespace

void DrumVoice::prepare(float sampleRate) noexcept {
  sampleRate_ = std::max(sampleRate, 1.0F);
  isActive_ = false;
  filter_.reset();
  const DrumShape& shape = shapeOf(sound_);
  env1Coefficient_ = decayPerSample(shape.env1, sampleRate_);
  if (shape.env2 > 0) env2Coefficient_ = decayPerSample(shape.env2, sampleRate_);
  if (shape.pitchEnv > 0) pitchCoefficient_ = decayPerSample(shape.pitchEnv, sampleRate_);
  if (shape.filter == NoiseFilter::highPass) filter_.setHighPass(shape.cutoff, shape.q, sampleRate_);
  if (shape.filter == NoiseFilter::bandPass) filter_.setBandPass(shape.cutoff, shape.q, sampleRate_);
  if (sound_ == DrumSound::clap) burstSpacing_ = static_cast<int>(sampleRate_ * clapBurstSeconds);
  lifetime_ = static_cast<int>(sampleRate_ + sampleRate_);
}

void DrumVoice::hit(std::uint8_t velocity) noexcept {
  const float v = static_cast<float>(std::min<int>(velocity, 127)) / 127;
  gain_ = v * (v * 0.6F + 0.4F);
  isActive_ = true;
  frame_ = 0;
  env1_ = env2_ = pitchEnv_ = 1;
  phase1_ = phase2_ = 0;
}

float DrumVoice::stepKick() noexcept {
  const float increment = (pitchEnv_ * 100 + 50) / sampleRate_;
  const float s = sine(phase1_);
  advance(phase1_, increment);
  const float output = env1_ * (s * 0.75F) + env2_ * (noise_.next() * 0.2F);
  pitchEnv_ *= pitchCoefficient_;
  env1_ *= env1Coefficient_;
  env2_ *= env2Coefficient_;
  return output;
}

float DrumVoice::stepRim() noexcept {
  const float s1 = sine(phase1_);
  const float s2 = sine(phase2_);
  advance(phase1_, 1000 / sampleRate_);
  advance(phase2_, 2500 / sampleRate_);
  const float output = env1_ * (s1 * 0.45F + s2 * 0.3F) + env2_ * (noise_.next() * 0.15F);
  env1_ *= env1Coefficient_;
  env2_ *= env2Coefficient_;
  return output;
}

float DrumVoice::stepSnare() noexcept {
  const float s = sine(phase1_);
  advance(phase1_, 180 / sampleRate_);
  const float y = filter_.process(noise_.next());
  const float output = s * 0.45F * env1_ + y * 0.4F * env2_;
  env1_ *= env1Coefficient_;
  env2_ *= env2Coefficient_;
  return output;
}

float DrumVoice::stepClap() noexcept {
  const float y = filter_.process(noise_.next());
  const bool isBurst = frame_ == burstSpacing_ || frame_ == 2 * burstSpacing_;
  const float e = isBurst ? 1 : env1_;
  const float output = y * (e * 1.2F + env2_ * 0.7F);
  env1_ = e * env1Coefficient_;
  env2_ *= env2Coefficient_;
  return output;
}

float DrumVoice::stepHat() noexcept {
  const float output = filter_.process(noise_.next()) * 0.8F * env1_;
  env1_ *= env1Coefficient_;
  return output;
}

float DrumVoice::stepLowTom() noexcept {
  const float increment = (pitchEnv_ * 30 + 80) / sampleRate_;
  const float s = sine(phase1_);
  advance(phase1_, increment);
  const float output = env1_ * (s * 0.75F);
  pitchEnv_ *= pitchCoefficient_;
  env1_ *= env1Coefficient_;
  return output;
}

float DrumVoice::stepPerc() noexcept {
  const float s1 = sine(phase1_);
  const float s2 = sine(phase2_);
  advance(phase1_, 600 / sampleRate_);
  advance(phase2_, 613 / sampleRate_);
  const float output = env1_ * (s1 * 0.4F + s2 * 0.4F);
  env1_ *= env1Coefficient_;
  return output;
}

template <DrumSound sound>
float DrumVoice::step() noexcept {
  if constexpr (sound == DrumSound::kick) return stepKick();
  if constexpr (sound == DrumSound::rim) return stepRim();
  if constexpr (sound == DrumSound::snare) return stepSnare();
  if constexpr (sound == DrumSound::clap) return stepClap();
  if constexpr (sound == DrumSound::closedHat || sound == DrumSound::openHat) return stepHat();
  if constexpr (sound == DrumSound::lowTom) return stepLowTom();
  if constexpr (sound == DrumSound::perc) return stepPerc();
}

template <DrumSound sound>
void DrumVoice::run(float* into, int frameCount) noexcept {
  for (int i = 0; i < frameCount && isActive_; ++i) {
    const float output = step<sound>();
    const float lastingEnvelope = endsWithNoise(sound) ? env2_ : env1_;
    if (lastingEnvelope < silence) isActive_ = false;
    ++frame_;
    if (frame_ > lifetime_) isActive_ = false;
    into[i] += output * gain_;
  }
}

void DrumVoice::render(float* into, int frameCount) noexcept {
  switch (sound_) {
    case DrumSound::kick:
      return run<DrumSound::kick>(into, frameCount);
    case DrumSound::rim:
      return run<DrumSound::rim>(into, frameCount);
    case DrumSound::snare:
      return run<DrumSound::snare>(into, frameCount);
    case DrumSound::clap:
      return run<DrumSound::clap>(into, frameCount);
    case DrumSound::closedHat:
      return run<DrumSound::closedHat>(into, frameCount);
    case DrumSound::lowTom:
      return run<DrumSound::lowTom>(into, frameCount);
    case DrumSound::openHat:
      return run<DrumSound::openHat>(into, frameCount);
    case DrumSound::perc:
      return run<DrumSound::perc>(into, frameCount);
  }
}

}  // namespace velmora
