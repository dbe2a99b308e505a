#include "Velmora/Audio/TrackEffects.h"

#include <algorithm>

namespace velmora {

namespace {

float gain(float decibels) noexcept { return std::clamp(decibels, -12.0F, 12.0F); }
float percent(float mix) noexcept { return std::clamp(mix, 0.0F, 1.0F) * 100; }

}  // namespace

TrackEffects::TrackEffects(double sampleRate) : reverb_(sampleRate) {
  equalizer_.prepare(sampleRate);
  delay_.prepare(sampleRate);
  channel_.prepare(sampleRate);
  apply({});
}

platform::Strip TrackEffects::strip(platform::SourceNode& source) noexcept {
  return {&source, &equalizer_, &delay_, &reverb_, &channel_};
}

void TrackEffects::apply(const FXSettings& settings) noexcept {
  using Band = platform::Equalizer::Band;
  equalizer_.setGainDB(Band::low, gain(settings.lowGainDB));
  equalizer_.setGainDB(Band::mid, gain(settings.midGainDB));
  equalizer_.setGainDB(Band::high, gain(settings.highGainDB));
  delay_.setWetDryMix(percent(settings.delayMix));
  reverb_.setWetDryMix(percent(settings.reverbMix));
}

}  // namespace velmora
