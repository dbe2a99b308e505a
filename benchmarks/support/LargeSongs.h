#pragma once

#include <cstddef>

#include "VelmoraCore/Song/Song.h"

namespace velmora::benchmarks {

/// A valid song with that many notes, spread over patterns of 1024 notes, each pattern on the timeline.
Song songWithNotes(std::size_t noteCount);

/// A song of the kind of `songWithNotes` whose document is just within the longest.
Song longestSong();

/// All lists full: 128 tracks, 4096 patterns of 32 notes, 16384 clips, which compile to a million events.
Song songWithMillionEvents();

}  // namespace velmora::benchmarks
