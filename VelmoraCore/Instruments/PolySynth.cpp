#include "VelmoraCore/Instruments/PolySynth.h"

#include <algorithm>
#include <limits>
#include <mutex>

#include "VelmoraCore/DSP/ExactMath.h"

namespace velmora {

namespace {

constexpr float fadeSeconds = 0.005F;
constexpr float driveOfLevel = 0.33F;
constexpr int chunkFrames = 64;  // bounds the scratch on the stack

}  // namespace

PolySynth::PolySynth(SynthPreset preset, const VoiceKernel& kernel)
    : kernel_(kernel), preset_(preset), parameters_(&Parameters::standard(preset)) {
  prepare(static_cast<double>(sampleRate_), 0);
}

void PolySynth::setPreset(SynthPreset preset) noexcept {
  const std::lock_guard guard(presetLock_);
  requestedPreset_ = preset;
}

void PolySynth::prepare(double sampleRate, int /*maxFrames*/) {
  sampleRate_ = static_cast<float>(sampleRate);
  events_.clear();
  voices_ = {};
  lanes_ = {};
  lanes_.fadeGain.fill(1);
  applyParameters();
}

void PolySynth::applyParameters() noexcept {
  const Parameters& p = *parameters_;
  const float rate = std::max(sampleRate_, 1.0F);
  lanes_.sampleRate = rate;
  lanes_.parameters = &p;
  lanes_.ampEnv.setShape({p.ampAttack, p.ampDecay, p.ampSustain, p.ampRelease, rate});
  lanes_.filterEnv.setShape({p.filterAttack, p.filterDecay, p.filterSustain, p.filterRelease, rate});
  lanes_.filter.designedCutoff.fill(std::numeric_limits<float>::quiet_NaN());  // other resonance: design anew
  fadeStep_ = 1 / std::max(rate * fadeSeconds, 1.0F);
  for (int index = 0; index < voiceCount; ++index) {
    const auto lane = static_cast<std::size_t>(index);
    if (voice(index).isFading) lanes_.fadeStep[lane] = fadeStep_;
    if (voice(index).isActive) retune(index);
  }
}

void PolySynth::retune(int index) noexcept {
  const auto lane = static_cast<std::size_t>(index);
  const Parameters& p = *parameters_;
  const float rate = lanes_.sampleRate;
  const float frequency = exact::exp2((static_cast<float>(voice(index).pitch) + -69) / 12) * 440;
  const float detune1 = exact::exp2(p.osc1DetuneCents / 1200);
  const float detune2 = exact::exp2(p.osc2DetuneCents / 1200 + static_cast<float>(p.osc2Octave));
  lanes_.osc1.increment[lane] = std::clamp(detune1 * frequency / rate, 0.0F, 0.5F);
  lanes_.osc2.increment[lane] = std::clamp(detune2 * frequency / rate, 0.0F, 0.5F);
}

void PolySynth::setVelocity(int index, std::uint8_t velocity) noexcept {
  const auto lane = static_cast<std::size_t>(index);
  const float v = static_cast<float>(std::min<int>(velocity, 127)) / 127;
  lanes_.velocityGain[lane] = 0.8F * v + 0.2F;
  lanes_.cutoffScale[lane] = 0.4F * v + 0.6F;
}

void PolySynth::noteOn(std::uint8_t pitch, std::uint8_t velocity, std::int64_t atFrame) noexcept {
  if (velocity == 0) return noteOff(pitch, atFrame);
  // Overflow makes a note early, never lost.
  if (!events_.enqueue(std::max<std::int64_t>(atFrame, 0), pitch, velocity, true)) startNote(pitch, velocity);
}

void PolySynth::noteOff(std::uint8_t pitch, std::int64_t atFrame) noexcept {
  if (!events_.enqueue(std::max<std::int64_t>(atFrame, 0), pitch, 0, false)) endNote(pitch);
}

void PolySynth::allNotesOff() noexcept {
  events_.clear();
  for (int index = 0; index < voiceCount; ++index) {
    if (!voice(index).isActive) continue;
    voice(index).isHeld = false;
    release(index);
  }
}

void PolySynth::apply(const InstrumentEventQueue::Event& event) noexcept {
  if (event.isOn) {
    startNote(event.pitch, event.velocity);
  } else {
    endNote(event.pitch);
  }
}

void PolySynth::startNote(std::uint8_t pitch, std::uint8_t velocity) noexcept {
  ++voiceOrder_;
  const auto first = [this](auto fits) {
    const auto found = std::find_if(voices_.begin(), voices_.end(), fits);
    return found == voices_.end() ? -1 : static_cast<int>(found - voices_.begin());
  };
  if (const int same = first([pitch](const Voice& v) { return v.plays(pitch); }); same >= 0) {
    retrigger(same, velocity);
  } else if (const int free = first([](const Voice& v) { return !v.isActive; }); free >= 0) {
    begin(free, pitch, velocity);
    voice(free).order = voiceOrder_;
  } else {
    steal(voiceToSteal(), pitch, velocity);
  }
}

void PolySynth::retrigger(int index, std::uint8_t velocity) noexcept {
  Voice& v = voice(index);
  v.order = voiceOrder_;
  v.isHeld = true;
  if (v.isFading) {
    v.pendingVelocity = velocity;
    return;
  }
  setVelocity(index, velocity);
  lanes_.ampEnv.enter(index, ADSR::Stage::attack);
  lanes_.filterEnv.enter(index, ADSR::Stage::attack);
}

void PolySynth::begin(int index, std::uint8_t pitch, std::uint8_t velocity) noexcept {
  const auto lane = static_cast<std::size_t>(index);
  Voice& v = voice(index);
  v.pitch = pitch;
  v.isActive = v.isHeld = true;
  v.isFading = false;
  lanes_.fadeGain[lane] = 1;
  lanes_.fadeStep[lane] = 0;
  setVelocity(index, velocity);
  retune(index);
  lanes_.osc1.phase[lane] = lanes_.osc2.phase[lane] = 0;
  lanes_.filter.z1[lane] = lanes_.filter.z2[lane] = 0;
  lanes_.ampEnv.start(index);
  lanes_.filterEnv.start(index);
  lanes_.controlCounter[lane] = 0;  // the first sample updates the filter
}

int PolySynth::voiceToSteal() const noexcept {
  const auto isEarlier = [](const Voice& a, const Voice& b) {
    if (a.isHeld != b.isHeld) return !a.isHeld;  // released voices go first
    return a.order < b.order;
  };
  return static_cast<int>(std::min_element(voices_.begin(), voices_.end(), isEarlier) - voices_.begin());
}

void PolySynth::steal(int index, std::uint8_t pitch, std::uint8_t velocity) noexcept {
  const auto lane = static_cast<std::size_t>(index);
  Voice& v = voice(index);
  if (!v.isFading) lanes_.fadeGain[lane] = 1;
  lanes_.fadeStep[lane] = fadeStep_;
  v.isFading = true;
  v.pendingPitch = pitch;
  v.pendingVelocity = velocity;
  v.order = voiceOrder_;
  v.isHeld = true;
}

void PolySynth::endNote(std::uint8_t pitch) noexcept {
  for (int index = 0; index < voiceCount; ++index) {
    Voice& v = voice(index);
    if (!v.plays(pitch)) continue;
    v.isHeld = false;
    if (!v.isFading) release(index);  // a fading voice ends when its fade does
  }
}

void PolySynth::release(int index) noexcept {
  lanes_.ampEnv.noteOff(index);
  lanes_.filterEnv.noteOff(index);
}

void PolySynth::takeRequestedPreset() noexcept {
  std::optional<SynthPreset> requested;
  {
    const std::lock_guard guard(presetLock_);
    std::swap(requested, requestedPreset_);
  }
  if (!requested || *requested == preset_) return;
  preset_ = *requested;
  parameters_ = &Parameters::standard(preset_);
  applyParameters();
}

void PolySynth::render(float* into, int frameCount) noexcept {
  takeRequestedPreset();
  events_.runBlock(
      frameCount, [this](const InstrumentEventQueue::Event& event) { apply(event); },
      [this, into](int from, int to) { renderFrames(into + from, to - from); });
}

void PolySynth::renderFrames(float* into, int frameCount) noexcept {
  const float drive = parameters_->level * driveOfLevel;
  for (int start = 0; start < frameCount && !isSilent(); start += chunkFrames) {
    const int frames = std::min(chunkFrames, frameCount - start);
    float sums[chunkFrames];
    for (int done = 0; done < frames;) {
      endFadesThatAreDue();
      const int span = framesUntilFadeEnds(frames - done);
      kernel_.step(lanes_, span, sums + done);
      retireEndedVoices();
      done += span;
    }
    kernel_.addClipped(into + start, sums, drive, frames);
  }
}

void PolySynth::endFadesThatAreDue() noexcept {
  for (int index = 0; index < voiceCount; ++index) {
    const auto lane = static_cast<std::size_t>(index);
    Voice& v = voice(index);
    if (!v.isFading || lanes_.fadeGain[lane] - lanes_.fadeStep[lane] > 0) continue;
    if (v.isHeld) {
      begin(index, v.pendingPitch, v.pendingVelocity);
    } else {
      v.isFading = v.isActive = false;
      lanes_.fadeGain[lane] = 1;
      lanes_.fadeStep[lane] = 0;
      lanes_.ampEnv.silence(index);
      lanes_.filterEnv.silence(index);
    }
  }
}

int PolySynth::framesUntilFadeEnds(int atMost) const noexcept {
  int frames = atMost;
  for (std::size_t lane = 0; lane < voiceCount; ++lane) {
    if (!voices_[lane].isFading) continue;
    float gain = lanes_.fadeGain[lane];
    for (int frame = 0; frame < frames; ++frame) {
      gain = gain - lanes_.fadeStep[lane];
      if (gain <= 0) frames = frame;
    }
  }
  return frames;
}

void PolySynth::retireEndedVoices() noexcept {
  for (int index = 0; index < voiceCount; ++index) {
    Voice& v = voice(index);
    if (v.isActive && !v.isFading && lanes_.ampEnv.isIdle(index)) {
      v.isActive = false;
      lanes_.filterEnv.silence(index);
    }
  }
}

bool PolySynth::isSilent() const noexcept {
  return std::none_of(voices_.begin(), voices_.end(), [](const Voice& v) { return v.isActive; });
}

}  // namespace velmora
