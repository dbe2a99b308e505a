#pragma once

#include <cstdint>
#include <rapidcheck.h>
#include <string>

#include "VelmoraCore/Song/Song.h"

namespace velmora::testing {

/// An id that reads as its number: 00000000-0000-0000-0000-00000000002A for 42.
UUID uuid(std::uint8_t number);

Note note(std::uint8_t pitch, double startBeat, double durationBeats, std::uint8_t velocity = 100);

/// A valid song with one of everything and fixed ids: tracks 1 (drums), 2 (bass) and 3 (audio), patterns 11
/// and 12 of the first two, notes 21 and 22 in pattern 11, clips 31 (pattern 11) and 32 (asset 41), a loop.
Song sampleSong();

/// Random valid songs, a few records a list.
rc::Gen<Song> validSongs();

/// Draws one edit by a random helper, sane or wild in its arguments, applies it and returns its name. For use
/// inside a property.
std::string applyRandomEdit(Song& song);

}  // namespace velmora::testing
