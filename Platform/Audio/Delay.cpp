#include "Platform/Audio/Delay.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "Platform/Audio/Samples.h"

namespace platform {
namespace {

/// The pole of y = (1 - p) x + p y' whose response is exactly -3 dB at `frequency`.
float onePoleAt(double frequency, double sampleRate) {
  const double b = 2 - std::cos(2 * std::numbers::pi * std::min(frequency / sampleRate, 0.5));
  return static_cast<float>(b - std::sqrt(b * b - 1));
}

}  // namespace

Delay::Delay(double delayTime, float feedbackPercent)
    : delayTime_(delayTime), feedback_(feedbackPercent / 100) {
  prepare(48000);
}

void Delay::prepare(double sampleRate) {
  delayFrames_ = std::max(1, static_cast<int>(std::lround(delayTime_ * sampleRate)));
  lowPassPole_ = onePoleAt(lowPassFrequency, sampleRate);
  line_.prepare(delayFrames_);
  mixPercent_.prepare(sampleRate);
  reset();
}

void Delay::reset() noexcept {
  mixPercent_.reset();
  clear();
}

void Delay::clear() noexcept {
  if (isQuiet()) return;
  line_.clear();
  lowPassState_ = 0;
  silentFrames_ = line_.length();
}

void Delay::setWetDryMix(float percent) noexcept { mixPercent_.set(std::clamp(percent, 0.0F, 100.0F)); }

void Delay::skip(int frameCount) noexcept {
  mixPercent_.beginBlock();
  mixPercent_.skip(frameCount);
}

void Delay::process(float* samples, int frameCount) noexcept {
  mixPercent_.beginBlock();
  const int chunk = std::min(DelayLine::chunkFrames, delayFrames_);
  for (int n = 0; n < frameCount && !mixPercent_.isResting(0); n += chunk) {
    processChunk(samples + n, std::min(chunk, frameCount - n));
  }
  if (mixPercent_.isResting(0)) clear();
}

void Delay::processChunk(float* samples, int frameCount) noexcept {
  std::array<float, DelayLine::chunkFrames> percent;
  mixPercent_.fill(percent.data(), frameCount);

  const float* const delayed = line_.read(delayFrames_);
  float* const input = line_.head();
  const float pole = lowPassPole_;
  float wet = lowPassState_;
  for (int n = 0; n < frameCount; ++n) {
    wet = (1 - pole) * delayed[n] + pole * wet;
    const float dry = samples[n];
    const float mix = percent[static_cast<std::size_t>(n)] * 0.01F;
    input[n] = dry + feedback_ * wet;
    samples[n] = dry * (1 - mix) + wet * mix;
  }
  lowPassState_ = wet;

  const bool isInputSilent = isSilent(input, frameCount);
  silentFrames_ = isInputSilent ? std::min(silentFrames_ + frameCount, line_.length()) : 0;
  line_.advance(frameCount);
}

}  // namespace platform
