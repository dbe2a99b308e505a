#include "VelmoraCore/Song/TrackKind.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace velmora {
namespace {

constexpr std::array presets{SynthPreset::miniSynth, SynthPreset::bass, SynthPreset::pad, SynthPreset::lead,
                             SynthPreset::keys};

struct PresetTexts {
  std::string_view storedValue;
  std::string_view label;
};

constexpr std::array<PresetTexts, presets.size()> presetTexts{{
    {"miniSynth", "MiniSynth"},
    {"bass", "Bass"},
    {"pad", "Pad"},
    {"lead", "Lead"},
    {"keys", "Keys"},
}};

const PresetTexts& texts(SynthPreset preset) { return presetTexts.at(static_cast<std::size_t>(preset)); }

}  // namespace

std::span<const SynthPreset> allSynthPresets() { return presets; }
std::string_view storedValue(SynthPreset preset) { return texts(preset).storedValue; }
std::string_view label(SynthPreset preset) { return texts(preset).label; }

std::optional<SynthPreset> synthPreset(std::string_view text) {
  const auto found =
      std::find_if(presets.begin(), presets.end(), [&](auto preset) { return storedValue(preset) == text; });
  return found == presets.end() ? std::nullopt : std::optional(*found);
}

}  // namespace velmora
