#include "VelmoraCore/DSP/ADSR.h"

#include <algorithm>

#include "VelmoraCore/DSP/ExactMath.h"

namespace velmora {

namespace {

constexpr double attackCurve = -1.4663370382269432;  // log(0.3 / 1.3): the attack aims at 1.3
constexpr double fallCurve = -9.210440392236116;     // -log(10001): the falls aim 0.0001 below their end
constexpr float attackAim = 1.3F;
constexpr float fallOvershoot = -0.0001F;

/// The factor that covers `curve` in `seconds`; 0 for less than a sample, so that the next step jumps to the
/// end.
float coefficientFor(double curve, float seconds, float sampleRate) noexcept {
  const double frames = static_cast<double>(seconds) * static_cast<double>(sampleRate);
  return frames >= 1 ? static_cast<float>(exact::exp(curve / frames)) : 0;
}

}  // namespace

ADSR::ADSR(float attack, float decay, float sustain, float release, float sampleRate) noexcept
    : attack_(attack), decay_(decay), sustain_(sustain), release_(release), sampleRate_(sampleRate) {
  setSampleRate(sampleRate);
}

void ADSR::setSampleRate(float sampleRate) noexcept {
  sampleRate_ = std::max(sampleRate, 1.0F);
  designAttack();
  designDecay();
  designRelease();
}

void ADSR::setAttack(float seconds) noexcept {
  attack_ = seconds;
  designAttack();
}

void ADSR::setDecay(float seconds) noexcept {
  decay_ = seconds;
  designDecay();
}

void ADSR::setSustain(float level) noexcept {
  sustain_ = level;
  designDecay();
}

void ADSR::setRelease(float seconds) noexcept {
  release_ = seconds;
  designRelease();
}

void ADSR::designAttack() noexcept {
  const float coefficient = coefficientFor(attackCurve, attack_, sampleRate_);
  attackSegment_ = {coefficient, (1 - coefficient) * attackAim};
}

void ADSR::designDecay() noexcept {
  sustainLevel_ = std::clamp(sustain_, 0.0F, 1.0F);
  const float coefficient = coefficientFor(fallCurve, decay_, sampleRate_);
  decaySegment_ = {coefficient, (sustainLevel_ + fallOvershoot) * (1 - coefficient)};
}

void ADSR::designRelease() noexcept {
  const float coefficient = coefficientFor(fallCurve, release_, sampleRate_);
  releaseSegment_ = {coefficient, (1 - coefficient) * fallOvershoot};
}

void ADSR::reset() noexcept {
  stage_ = Stage::idle;
  level_ = 0;
}

float ADSR::next() noexcept {
  const auto step = [this](const Segment& segment) { return segment.base + level_ * segment.coefficient; };
  switch (stage_) {
    case Stage::idle:
      return 0;
    case Stage::attack:
      level_ = step(attackSegment_);
      if (level_ >= 1) {
        level_ = 1;
        stage_ = Stage::decay;
      }
      return level_;
    case Stage::decay:
      level_ = step(decaySegment_);
      if (level_ <= sustainLevel_) {
        level_ = sustainLevel_;
        stage_ = sustainLevel_ > 0 ? Stage::sustain : Stage::idle;
      }
      return level_;
    case Stage::sustain:
      level_ = level_ + (sustainLevel_ - level_) * sustainGlide;
      return level_;
    case Stage::release:
      level_ = step(releaseSegment_);
      if (level_ <= 0) {
        level_ = 0;
        stage_ = Stage::idle;
      }
      return level_;
  }
  return 0;
}

}  // namespace velmora
