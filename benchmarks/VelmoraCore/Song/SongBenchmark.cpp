#include <algorithm>
#include <benchmark/benchmark.h>
#include <string>

#include "VelmoraCore/Song/Limits.h"
#include "VelmoraCore/Song/SongHash.h"
#include "VelmoraCore/Song/SongJSON.h"
#include "VelmoraCore/Song/SongValidation.h"
#include "benchmarks/support/LargeSongs.h"
#include "benchmarks/support/Measure.h"

namespace velmora {
namespace {

using benchmarks::songWithNotes;

/// The longest document as the encoder writes it.
const std::string& largestText() {
  static const std::string text = encodeSong(benchmarks::longestSong());
  return text;
}

/// As many notes as fit in the longest document when nothing is written that needn't be: the most memory a
/// byte.
std::string densestText() {
  std::string text = encodeSong(Song::empty(""));
  const std::string place = "\"notes\": [";
  const auto at = text.find(place) + place.size();
  const std::string note = R"({"pitch":1,"startBeat":0,"durationBeats":1,"velocity":1})";
  std::string notes = note;
  while (text.size() + notes.size() + note.size() < limits::longestDocumentBytes) notes += "," + note;
  return text.insert(at, notes);
}

void load(benchmark::State& state, const std::string& text) {
  double peakBytes = 0;
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    const double before = benchmarks::startPeak();
    state.ResumeTiming();
    benchmark::DoNotOptimize(decodeSong(text));
    state.PauseTiming();
    peakBytes = std::max(peakBytes, benchmarks::peakBytes() - before);
    state.ResumeTiming();
  }
  const auto bytes = static_cast<double>(text.size());
  state.counters["documentMiB"] = bytes / (1 << 20);
  state.counters["peakPerByte"] = peakBytes / bytes;  // beside the text itself
}

void loadLargest(benchmark::State& state) { load(state, largestText()); }
void loadDensest(benchmark::State& state) { load(state, densestText()); }

void save(benchmark::State& state) {
  const Song song = decodeSong(largestText());
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(encodeSong(song));
}

void validateMillionNotes(benchmark::State& state) {
  const Song song = songWithNotes(1 << 20);
  for ([[maybe_unused]] auto _ : state) validateSong(song);
}

// One pattern with the most notes a pattern may have, as often as makes a million; ids in random order.
void validateLongPatterns(benchmark::State& state) {
  Song song = Song::empty("");
  std::vector<Note> notes(limits::mostNotesInPattern);
  for (Note& note : notes) note = {UUID::random(), 60, 0, 1, 100};
  for (int count = 0; count < 16; ++count) {
    Pattern pattern = song.addPattern(song.tracks[0].id);
    pattern.notes = SharedList<Note>(notes);
    song.update(pattern);
  }
  for ([[maybe_unused]] auto _ : state) validateSong(song);
}

void validateFullLists(benchmark::State& state) {
  Song song = Song::empty("");
  while (song.tracks.size() < limits::mostTracks) song.addTrack(TrackKind::drums());
  while (song.patterns.size() < limits::mostPatterns) song.addPattern(song.tracks.back().id);
  std::vector<Clip> clips(limits::mostClips);
  for (std::size_t index = 0; index < clips.size(); ++index) {
    const Pattern& pattern = song.patterns[index % song.patterns.size()];
    const std::size_t startBeat = index / 2;
    clips[index] = {UUID::random(), pattern.trackID, ClipSource::pattern(pattern.id),
                    static_cast<double>(startBeat), 4};
  }
  song.clips = SharedList<Clip>(std::move(clips));
  for ([[maybe_unused]] auto _ : state) validateSong(song);
}

void copyMillionNotes(benchmark::State& state) {
  const Song song = songWithNotes(1 << 20);
  for ([[maybe_unused]] auto _ : state) {
    const Song copy = song;
    benchmark::DoNotOptimize(&copy);
  }
}

void compareShared(benchmark::State& state) {
  const Song song = songWithNotes(1 << 20);
  Song copy = song;
  Track track = copy.tracks[0];
  track.volume = 0.5F;
  copy.update(track);
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(song.patterns == copy.patterns && !(song == copy));
}

void compareUnshared(benchmark::State& state) {
  const Song song = decodeSong(largestText());
  const Song other = decodeSong(largestText());
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(song == other);
}

void hashLargest(benchmark::State& state) {
  const Song song = decodeSong(largestText());
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(hashValue(song));
}

// An edit of one note while a copy waits to be saved: the pattern's notes and the list of patterns separate.
void editOneNoteOfAMillion(benchmark::State& state) {
  Song song = songWithNotes(1 << 20);
  for ([[maybe_unused]] auto _ : state) {
    const Song saved = song;
    Pattern pattern = song.patterns.back();
    pattern.editNote(pattern.notes[0].id, {.velocity = pattern.notes[0].velocity ^ 1}, 0.25);
    song.update(pattern);
    benchmark::DoNotOptimize(&saved);
  }
}

void randomIDs(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(UUID::random());
}

BENCHMARK(loadLargest)->Unit(benchmark::kMillisecond);
BENCHMARK(loadDensest)->Unit(benchmark::kMillisecond);
BENCHMARK(save)->Unit(benchmark::kMillisecond);
BENCHMARK(validateMillionNotes)->Unit(benchmark::kMillisecond);
BENCHMARK(validateLongPatterns)->Unit(benchmark::kMillisecond);
BENCHMARK(validateFullLists)->Unit(benchmark::kMillisecond);
BENCHMARK(copyMillionNotes);
BENCHMARK(compareShared);
BENCHMARK(compareUnshared)->Unit(benchmark::kMillisecond);
BENCHMARK(hashLargest)->Unit(benchmark::kMillisecond);
BENCHMARK(editOneNoteOfAMillion)->Unit(benchmark::kMicrosecond);
BENCHMARK(randomIDs);

}  // namespace
}  // namespace velmora
