#include "benchmarks/FixedWork.h"

#include <array>
#include <utility>

namespace velmora::benchmarks {

namespace {

constexpr double songBeats = 128;
constexpr double patternBeats = 4;
constexpr double noteBeats = 2;
constexpr std::array<std::uint8_t, 8> chord{45, 52, 57, 60, 64, 67, 71, 74};

std::vector<Note> heldNotes(int transposed) {
  std::vector<Note> notes;
  for (double startBeat = 0; startBeat < patternBeats; startBeat += noteBeats) {
    for (const std::uint8_t pitch : chord)
      notes.push_back(
          {UUID::random(), static_cast<std::uint8_t>(pitch + transposed), startBeat, noteBeats, 100});
  }
  return notes;
}

}  // namespace

Song FixedWork::song() const {
  Song song;
  song.id = UUID::random();
  song.name = "Fixed work";
  song.bpm = 128;
  for (int index = 0; index < trackCount; ++index) {
    Track track{.id = UUID::random(), .name = "Synth", .kind = TrackKind::synth(preset)};
    track.volume = 0.1F;  // no clipping, so that equal files mean equal sound
    track.pan = static_cast<float>(index % 5 - 2) / 4;
    if (effects == Effects::wet) track.fx = {3, -2, 2, 0.3F, 0.3F};
    Pattern pattern{UUID::random(), track.id, "Chord", patternBeats};
    if (notes == Notes::held) pattern.notes = SharedList(heldNotes(index % 8));
    track.selectedPatternID = pattern.id;
    song.clips.write().push_back({UUID::random(), track.id, ClipSource::pattern(pattern.id), 0, songBeats});
    song.patterns.write().push_back(std::move(pattern));
    song.tracks.write().push_back(std::move(track));
  }
  return song;
}

}  // namespace velmora::benchmarks
