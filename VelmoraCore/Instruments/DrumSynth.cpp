#include "VelmoraCore/Instruments/DrumSynth.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {

constexpr std::uint32_t seedStep = 0x9E3779B9;
constexpr int chunkFrames = 256;  // bounds the scratch on the stack

template <std::size_t... index>
std::array<DrumVoice, sizeof...(index)> makeVoices(std::index_sequence<index...>) {
  const auto sounds = allDrumSounds();
  return {DrumVoice(sounds[index], static_cast<std::uint32_t>(index + 1) * seedStep)...};
}

}  // namespace

DrumSynth::DrumSynth() : voices_(makeVoices(std::make_index_sequence<soundCount>())) {
  voiceIndexForPitch_.fill(-1);
  int index = 0;
  for (const DrumSound sound : allDrumSounds()) voiceIndexForPitch_[pitch(sound)] = index++;
  prepare(44100, 0);
}

void DrumSynth::prepare(double sampleRate, int /*maxFrames*/) {
  events_.clear();
  for (DrumVoice& voice : voices_) voice.prepare(static_cast<float>(sampleRate));
}

void DrumSynth::noteOn(std::uint8_t pitch, std::uint8_t velocity, std::int64_t atFrame) noexcept {
  if (pitch >= pitchCount || voiceIndexForPitch_[pitch] < 0 || velocity == 0) return;
  // Overflow makes a hit early, never lost.
  if (!events_.enqueue(std::max<std::int64_t>(atFrame, 0), pitch, velocity, true)) hit(pitch, velocity);
}

void DrumSynth::noteOff(std::uint8_t /*pitch*/, std::int64_t /*atFrame*/) noexcept {}

void DrumSynth::allNotesOff() noexcept { events_.clear(); }

void DrumSynth::hit(std::uint8_t pitch, std::uint8_t velocity) noexcept {
  voices_[static_cast<std::size_t>(voiceIndexForPitch_[pitch])].hit(velocity);
}

void DrumSynth::render(float* into, int frameCount) noexcept {
  events_.runBlock(
      frameCount, [this](const InstrumentEventQueue::Event& event) { hit(event.pitch, event.velocity); },
      [this, into](int from, int to) { renderFrames(into + from, to - from); });
}

void DrumSynth::renderFrames(float* into, int frameCount) noexcept {
  const auto isActive = [](const DrumVoice& voice) { return voice.isActive(); };
  for (int start = 0; start < frameCount; start += chunkFrames) {
    if (std::none_of(voices_.begin(), voices_.end(), isActive)) return;
    const int frames = std::min(chunkFrames, frameCount - start);
    float sum[chunkFrames] = {};
    for (DrumVoice& voice : voices_) {
      if (voice.isActive()) voice.render(sum, frames);
    }
    for (int i = 0; i < frames; ++i) into[start + i] += sum[i];
  }
}

}  // namespace velmora
