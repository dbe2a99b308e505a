// The projects that the studio makes from nothing.

#include "VelmoraCore/Song/Song.h"

namespace velmora {
namespace {

constexpr double demoClipBeats = 16;

Song newSong(std::string name) {
  Song song;
  song.id = UUID::random();
  song.name = std::move(name);
  return song;
}

Note note(std::uint8_t pitch, double startBeat, double durationBeats, std::uint8_t velocity) {
  return {UUID::random(), pitch, startBeat, durationBeats, velocity};
}

std::vector<Note> demoBeat() {
  constexpr std::uint8_t kick = pitch(DrumSound::kick);
  constexpr std::uint8_t snare = pitch(DrumSound::snare);
  constexpr std::uint8_t closedHat = pitch(DrumSound::closedHat);
  constexpr std::uint8_t openHat = pitch(DrumSound::openHat);
  std::vector<Note> notes;
  for (int beat = 0; beat < 4; ++beat) {
    notes.push_back(note(kick, beat, 0.25, beat == 0 ? 127 : 112));
    if (beat == 1) notes.push_back(note(snare, beat, 0.25, 108));
    if (beat == 3) notes.push_back(note(snare, beat, 0.25, 118));
    notes.push_back(note(closedHat, beat, 0.25, 100));
    notes.push_back(beat < 3 ? note(closedHat, beat + 0.5, 0.25, 72) : note(openHat, beat + 0.5, 0.5, 96));
  }
  return notes;
}

std::vector<Note> demoChords() {
  return {note(48, 0, 2, 96), note(51, 0, 2, 90), note(55, 0, 2, 90),
          note(44, 2, 2, 96), note(48, 2, 2, 90), note(51, 2, 2, 90)};
}

void addDemoTrack(Song& song, TrackKind kind, std::string name, std::vector<Note> notes) {
  const Track track = song.addTrack(kind, std::move(name));
  Pattern pattern = song.patterns.back();
  pattern.notes = SharedList<Note>(std::move(notes));
  song.update(pattern);
  song.update(Clip{UUID::random(), track.id, ClipSource::pattern(pattern.id), 0, demoClipBeats});
}

}  // namespace

Song Song::demo() {
  Song song = newSong("Demo");
  addDemoTrack(song, TrackKind::drums(), "Drums", demoBeat());
  addDemoTrack(song, TrackKind::synth(SynthPreset::pad), "Chords", demoChords());
  return song;
}

Song Song::empty(std::string name) {
  Song song = newSong(std::move(name));
  song.addTrack(TrackKind::drums());
  return song;
}

}  // namespace velmora
