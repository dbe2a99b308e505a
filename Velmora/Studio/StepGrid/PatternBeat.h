#pragma once

#include <optional>

#include "VelmoraCore/Render/TransportController.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// Where the transport stands, in its own beats.
struct TransportPosition {
  PlaybackMode mode = PlaybackMode::pattern;
  double playhead = 0;      ///< wrapped into the song
  double renderedBeat = 0;  ///< not wrapped
};

/// The beat at which a pattern sounds, from its own start; empty while it doesn't.
std::optional<double> patternBeat(const Song& song, const Pattern& pattern,
                                  const TransportPosition& position);

}  // namespace velmora
