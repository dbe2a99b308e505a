#include "VelmoraCore/Song/DrumSound.h"

#include <algorithm>
#include <array>

namespace velmora {
namespace {

constexpr std::array sounds{DrumSound::kick,      DrumSound::rim,    DrumSound::snare,   DrumSound::clap,
                            DrumSound::closedHat, DrumSound::lowTom, DrumSound::openHat, DrumSound::perc};
constexpr std::array<std::string_view, sounds.size()> labels{"Kick",       "Rim",     "Snare",    "Clap",
                                                             "Closed Hat", "Low Tom", "Open Hat", "Perc"};

}  // namespace

std::span<const DrumSound> allDrumSounds() { return sounds; }

std::string_view label(DrumSound sound) {
  const auto found = std::find(sounds.begin(), sounds.end(), sound);
  return labels.at(static_cast<std::size_t>(found - sounds.begin()));
}

std::optional<DrumSound> drumSound(int value) {
  const auto found =
      std::find_if(sounds.begin(), sounds.end(), [&](auto sound) { return pitch(sound) == value; });
  return found == sounds.end() ? std::nullopt : std::optional(*found);
}

}  // namespace velmora
