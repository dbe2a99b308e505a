#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace velmora {

/// The eight sounds of a drum track; the value is the MIDI pitch that stands for the sound in a pattern.
enum class DrumSound : std::uint8_t {
  kick = 36,
  rim = 37,
  snare = 38,
  clap = 39,
  closedHat = 42,
  lowTom = 45,
  openHat = 46,
  perc = 47,
};

/// All sounds in the order of every list of them.
std::span<const DrumSound> allDrumSounds();
std::string_view label(DrumSound sound);
constexpr std::uint8_t pitch(DrumSound sound) { return static_cast<std::uint8_t>(sound); }
std::optional<DrumSound> drumSound(int pitch);

}  // namespace velmora
