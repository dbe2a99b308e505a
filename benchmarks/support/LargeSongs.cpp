#include "benchmarks/support/LargeSongs.h"

#include <algorithm>
#include <utility>

#include "VelmoraCore/Song/Limits.h"
#include "VelmoraCore/Song/SongJSON.h"

namespace velmora::benchmarks {

namespace {

constexpr std::size_t notesInSmallPattern = 32;

/// Four beats of eighths of a beat, not in their order.
Pattern smallPattern(const UUID& trackID) {
  std::vector<Note> notes(notesInSmallPattern);
  for (std::size_t index = 0; index < notes.size(); ++index) {
    const double startBeat = static_cast<double>(index * 13 % notesInSmallPattern) / 8;
    notes[index] = {UUID::random(), static_cast<std::uint8_t>(48 + index), startBeat, 0.125, 100};
  }
  return {UUID::random(), trackID, "Pattern", 4, SharedList<Note>(std::move(notes))};
}

}  // namespace

Song songWithNotes(std::size_t noteCount) {
  constexpr std::size_t notesInPattern = 1024;
  Song song = Song::empty("Large");
  const UUID trackID = song.tracks[0].id;
  while (noteCount > 0) {
    std::vector<Note> notes(std::min(noteCount, notesInPattern));
    for (std::size_t index = 0; index < notes.size(); ++index) {
      const double startBeat = static_cast<double>(index) / 256;
      notes[index] = {UUID::random(), static_cast<std::uint8_t>(index % 128), startBeat, 1.0 / 3, 100};
      notes[index].durationBeats = std::min(notes[index].durationBeats, 4 - startBeat);
    }
    noteCount -= notes.size();
    Pattern pattern = song.addPattern(trackID);
    pattern.notes = SharedList<Note>(std::move(notes));
    song.update(pattern);
    song.placePattern(pattern.id, static_cast<double>(song.clips.size() * 4));
  }
  return song;
}

Song longestSong() {
  const std::size_t bytesOfNote = encodeSong(songWithNotes(2048)).size() / 2048;
  std::size_t noteCount = limits::longestDocumentBytes / bytesOfNote;
  Song song = songWithNotes(noteCount);
  while (encodeSong(song).size() > limits::longestDocumentBytes) song = songWithNotes(noteCount -= 1024);
  return song;
}

Song songWithMillionEvents() {
  constexpr std::size_t patternsOfTrack = limits::mostPatterns / limits::mostTracks;
  constexpr std::size_t clipsOfTrack = limits::mostClips / limits::mostTracks;
  Song song;
  song.id = UUID::random();
  song.name = "Full";
  auto& tracks = song.tracks.write();
  auto& patterns = song.patterns.write();
  auto& clips = song.clips.write();
  for (std::size_t index = 0; index < limits::mostTracks; ++index) {
    const UUID trackID = UUID::random();
    const std::size_t first = patterns.size();
    for (std::size_t count = 0; count < patternsOfTrack; ++count) patterns.push_back(smallPattern(trackID));
    for (std::size_t count = 0; count < clipsOfTrack; ++count) {
      const UUID& patternID = patterns[first + count % patternsOfTrack].id;
      clips.push_back(
          {UUID::random(), trackID, ClipSource::pattern(patternID), static_cast<double>(count * 4), 4});
    }
    tracks.push_back({.id = trackID,
                      .name = "Synth",
                      .kind = TrackKind::synth(SynthPreset::keys),
                      .selectedPatternID = patterns[first].id});
  }
  return song;
}

}  // namespace velmora::benchmarks
