#include "Platform/Audio/MixerNode.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace platform {
namespace {

/// The gain of the side that `pan` points away from by `distance`: exactly 0 at 1.
float farGain(float distance) {
  if (distance <= 0) return 1;
  if (distance >= 1) return 0;
  return static_cast<float>(std::cos(static_cast<double>(distance) * std::numbers::pi / 2));
}

void scale(float* samples, int frameCount, GlidingParameter& gain) noexcept {
  gain.beginBlock();
  int n = 0;
  for (; n < frameCount && gain.isGliding(); ++n) samples[n] *= gain.next();
  if (gain.isResting(1)) return;
  const float steady = gain.value();
  for (; n < frameCount; ++n) samples[n] *= steady;
}

}  // namespace

void MixerNode::prepare(double sampleRate) noexcept {
  leftGain_.prepare(sampleRate);
  rightGain_.prepare(sampleRate);
}

void MixerNode::reset() noexcept {
  leftGain_.reset();
  rightGain_.reset();
}

void MixerNode::setOutputVolume(float volume) noexcept {
  if (!std::isfinite(volume)) return;
  volume_ = std::max(volume, 0.0F);
  updateGains();
}

void MixerNode::setPan(float pan) noexcept {
  if (!std::isfinite(pan)) return;
  pan_ = std::clamp(pan, -1.0F, 1.0F);
  updateGains();
}

void MixerNode::updateGains() noexcept {
  leftGain_.set(volume_ * farGain(pan_));
  rightGain_.set(volume_ * farGain(-pan_));
}

void MixerNode::process(float* left, float* right, int frameCount) noexcept {
  scale(left, frameCount, leftGain_);
  scale(right, frameCount, rightGain_);
}

void MixerNode::skip(int frameCount) noexcept {
  for (auto* const gain : {&leftGain_, &rightGain_}) {
    gain->beginBlock();
    gain->skip(frameCount);
  }
}

}  // namespace platform
