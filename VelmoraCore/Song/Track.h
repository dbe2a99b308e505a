#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "VelmoraCore/Song/TrackKind.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

enum class TrackColor : std::uint8_t { blue, orange, red, pink, green, purple, teal, yellow };

std::span<const TrackColor> allTrackColors();
std::string_view storedValue(TrackColor color);
std::optional<TrackColor> trackColor(std::string_view storedValue);

/// Effect amounts of a track: gains in decibels from -12 to 12, mixes from 0 to 1.
struct FXSettings {
  float lowGainDB = 0;
  float midGainDB = 0;
  float highGainDB = 0;
  float delayMix = 0;
  float reverbMix = 0;

  bool operator==(const FXSettings&) const = default;
};

/// One row of the arrangement and one channel of the mixer.
struct Track {
  UUID id{};
  std::string name{};
  TrackKind kind = TrackKind::drums();
  TrackColor color = TrackColor::blue;
  float volume = 0.8F;  ///< 0 to 1
  float pan = 0;        ///< -1 to 1
  bool isMuted = false;
  bool isSoloed = false;
  FXSettings fx{};
  /// The pattern that the editors show and that pattern mode plays; names a pattern of this track.
  std::optional<UUID> selectedPatternID{};

  bool operator==(const Track&) const = default;
};

}  // namespace velmora
