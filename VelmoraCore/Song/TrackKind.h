#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace velmora {

/// The five fixed sounds of the polyphonic synthesizer.
enum class SynthPreset : std::uint8_t { miniSynth, bass, pad, lead, keys };

std::span<const SynthPreset> allSynthPresets();
std::string_view storedValue(SynthPreset preset);
std::string_view label(SynthPreset preset);
std::optional<SynthPreset> synthPreset(std::string_view storedValue);

/// The three families of tracks; clips move only within a family.
enum class TrackFamily : std::uint8_t { synth, drums, audio };

/// What a track plays: a synthesizer with one preset, the drum kit, or audio files.
class TrackKind {
 public:
  static constexpr TrackKind synth(SynthPreset preset) { return {TrackFamily::synth, preset}; }
  static constexpr TrackKind drums() { return {TrackFamily::drums, SynthPreset::miniSynth}; }
  static constexpr TrackKind audio() { return {TrackFamily::audio, SynthPreset::miniSynth}; }

  constexpr TrackFamily family() const { return family_; }
  constexpr bool isSynth() const { return family_ == TrackFamily::synth; }
  constexpr bool isDrums() const { return family_ == TrackFamily::drums; }
  constexpr bool isAudio() const { return family_ == TrackFamily::audio; }

  /// The preset of a synthesizer; empty for the other families.
  constexpr std::optional<SynthPreset> preset() const {
    return isSynth() ? std::optional(preset_) : std::nullopt;
  }

  bool operator==(const TrackKind&) const = default;

 private:
  constexpr TrackKind(TrackFamily family, SynthPreset preset) : family_(family), preset_(preset) {}

  TrackFamily family_;
  SynthPreset preset_;  // miniSynth outside the synth family, so that equality is field-wise
};

}  // namespace velmora
