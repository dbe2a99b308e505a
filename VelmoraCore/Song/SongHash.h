#pragma once

#include <cstddef>

#include "VelmoraCore/Song/Song.h"

namespace velmora {

// Field-wise hashes that agree with equality: equal records hash alike, negative zero like zero.
std::size_t hashValue(const Song& song);
std::size_t hashValue(const Track& track);
std::size_t hashValue(const TrackKind& kind);
std::size_t hashValue(const FXSettings& fx);
std::size_t hashValue(const LoopRange& loop);
std::size_t hashValue(const Pattern& pattern);
std::size_t hashValue(const Note& note);
std::size_t hashValue(const Clip& clip);
std::size_t hashValue(const ClipSource& source);
std::size_t hashValue(const AudioAsset& asset);

}  // namespace velmora
