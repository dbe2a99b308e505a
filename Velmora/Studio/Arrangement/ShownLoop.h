#pragma once

#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// The loop to show: the song's own or, without one, the whole song.
inline LoopRange shownLoop(const Song& song) {
  return song.loop.value_or(LoopRange{0, song.songLengthBeats()});
}

}  // namespace velmora
