#include "tests/support/Songs.h"

#include <climits>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <variant>

namespace velmora::testing {
namespace {

// Properties run with a fixed seed unless the environment asks for another.
[[maybe_unused]] const int seeded = setenv("RC_PARAMS", "seed=1", 0);

int below(int end) { return *rc::gen::inRange(0, end); }
bool coin() { return below(2) == 0; }

template <class Container>
auto oneOf(const Container& items) {
  return *(items.begin() + below(static_cast<int>(items.size())));
}

// Both ends included; rarely a number with a short decimal form.
double within(double low, double high) {
  constexpr std::uint64_t fine = 1U << 30;
  const auto part = *rc::gen::weightedOneOf<std::uint64_t>(
      {{1, rc::gen::element<std::uint64_t>(0, fine)}, {6, rc::gen::inRange<std::uint64_t>(0, fine)}});
  return low + (high - low) * static_cast<double>(part) / fine;
}

float floatWithin(double low, double high) { return static_cast<float>(within(low, high)); }

std::string anyText() {
  return *rc::gen::element<std::string>("", "Beat", "a \"quoted\" \\ name", "line\nbreak\ttab", "Bässe 🥁",
                                        std::string("nul\0inside", 10), "\xE2\x80\xA8");
}

TrackKind anyKind() {
  return *rc::gen::element(TrackKind::drums(), TrackKind::audio(),
                           TrackKind::synth(oneOf(allSynthPresets())));
}

void setMix(Track& track) {
  track.volume = floatWithin(0, 1);
  track.pan = floatWithin(-1, 1);
  track.isMuted = coin();
  track.isSoloed = coin();
  track.fx = {floatWithin(-12, 12), floatWithin(-12, 12), floatWithin(-12, 12), floatWithin(0, 1),
              floatWithin(0, 1)};
}

std::vector<Note> anyNotes(double lengthBeats) {
  std::vector<Note> notes;
  for (int left = below(6); left > 0; --left) {
    const double startBeat = lengthBeats * within(0, 0.999);
    notes.push_back(note(static_cast<std::uint8_t>(below(128)), startBeat,
                         (lengthBeats - startBeat) * within(0.001, 1),
                         static_cast<std::uint8_t>(1 + below(127))));
  }
  return notes;
}

Song anySong() {
  Song song;
  song.id = UUID::random();
  song.name = anyText();
  song.bpm = within(40, 300);
  song.masterVolume = floatWithin(0, 1);
  for (int left = below(5); left > 0; --left) {
    Track track = song.addTrack(anyKind(), coin() ? std::optional(anyText()) : std::nullopt);
    setMix(track);
    song.update(track);
    for (int more = below(3); more > 0; --more) song.addPattern(track.id, anyText());
  }
  for (Pattern pattern : SharedList(song.patterns)) {
    pattern.lengthBeats = coin() ? 4 : within(0.25, 40);
    pattern.notes = SharedList<Note>(anyNotes(pattern.lengthBeats));
    song.update(pattern);
    if (coin()) song.placePattern(pattern.id, within(0, 64));
  }
  for (const Track& track : SharedList(song.tracks)) {
    if (!track.kind.isAudio()) continue;
    const AudioAsset asset{coin() ? std::optional(anyText()) : std::nullopt,
                           UUID::random(),
                           "take.caf",
                           within(8000, 192000),
                           below(1 << 20),
                           1 + below(2)};
    song.audioAssets.write().push_back(asset);
    song.update(Clip{UUID::random(), track.id, ClipSource::audio(asset.id), within(0, 64), within(0.1, 64)});
  }
  if (coin()) song.setLoop(within(0, 32), within(0, 64));
  return song;
}

double wildBeat() {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  return coin() ? within(-8, 40)
                : *rc::gen::element(0.0, -0.0, 0.25, 3.9, 16383.5, 16384.0, 20000.0, 5e-324, 1e-300, 1e-17,
                                    1e308, -1e308, infinity, -infinity, std::nan(""));
}

int wildInteger() { return *rc::gen::element(INT_MIN, -1, 0, 1, 36, 42, 64, 127, 128, 255, 65535, INT_MAX); }

template <class Draw>
auto maybe(Draw draw) {
  return coin() ? std::optional(draw()) : std::nullopt;
}

// Mostly the id of a record of the list, sometimes one that names nothing.
template <class Record>
UUID anyID(const SharedList<Record>& list) {
  return list.empty() || below(8) == 0 ? UUID::random() : oneOf(list).id;
}

using SongEdit = void (*)(Song&);
using PatternEdit = void (*)(Pattern&);

int wildStep() { return coin() ? below(20) : wildInteger(); }

const std::pair<const char*, std::variant<SongEdit, PatternEdit>> edits[] = {
    {"addTrack", [](Song& song) { song.addTrack(anyKind()); }},
    {"addPattern", [](Song& song) { song.addPattern(anyID(song.tracks)); }},
    {"placePattern", [](Song& song) { song.placePattern(anyID(song.patterns), wildBeat()); }},
    {"removeClip", [](Song& song) { song.removeClip(anyID(song.clips)); }},
    {"removeTrack", [](Song& song) { song.removeTrack(anyID(song.tracks)); }},
    {"removePattern", [](Song& song) { song.removePattern(anyID(song.patterns)); }},
    {"selectPattern", [](Song& song) { song.selectPattern(anyID(song.patterns), anyID(song.tracks)); }},
    {"duplicatePattern", [](Song& song) { song.duplicatePattern(anyID(song.patterns)); }},
    {"renamePattern", [](Song& song) { song.renamePattern(anyID(song.patterns), anyText()); }},
    {"setLoop", [](Song& song) { song.setLoop(wildBeat(), wildBeat()); }},
    {"update",
     [](Song& song) {
       if (song.tracks.empty()) return;
       Track track = oneOf(song.tracks);
       setMix(track);
       song.update(track);
     }},
    {"editClip",
     [](Song& song) {
       const auto track = maybe([&] { return anyID(song.tracks); });
       song.editClip(anyID(song.clips), {maybe(wildBeat), maybe(wildBeat), track});
     }},
    {"insertNote",
     [](Pattern& pattern) {
       pattern.insertNote(wildInteger(), wildInteger(), wildBeat(), wildBeat(), wildBeat());
     }},
    {"editNote",
     [](Pattern& pattern) {
       const NoteEdit edit{maybe(wildInteger), maybe(wildBeat), maybe(wildBeat), maybe(wildInteger)};
       pattern.editNote(anyID(pattern.notes), edit, wildBeat());
     }},
    {"removeNote", [](Pattern& pattern) { pattern.removeNote(anyID(pattern.notes)); }},
    {"toggleStep",
     [](Pattern& pattern) { pattern.toggleStep(oneOf(allDrumSounds()), wildStep(), wildInteger()); }},
    {"setStepVelocity",
     [](Pattern& pattern) { pattern.setStepVelocity(oneOf(allDrumSounds()), wildStep(), wildInteger()); }},
};

}  // namespace

UUID uuid(std::uint8_t number) {
  UUID id;
  id.bytes.back() = number;
  return id;
}

Note note(std::uint8_t pitch, double startBeat, double durationBeats, std::uint8_t velocity) {
  return {UUID::random(), pitch, startBeat, durationBeats, velocity};
}

Song sampleSong() {
  Song song;
  song.id = uuid(99);
  song.name = "Sample";
  song.tracks = {{.id = uuid(1), .name = "Drums", .selectedPatternID = uuid(11)},
                 {.id = uuid(2), .name = "Bass", .kind = TrackKind::synth(SynthPreset::bass)},
                 {.id = uuid(3), .name = "Take", .kind = TrackKind::audio()}};
  song.patterns = {{.id = uuid(11), .trackID = uuid(1), .name = "Beat"},
                   {.id = uuid(12), .trackID = uuid(2), .name = "Line"}};
  song.patterns.write()[0].notes = {{uuid(21), 36, 0, 0.25, 127}, {uuid(22), 42, 0.5, 0.25, 72}};
  song.clips = {{uuid(31), uuid(1), ClipSource::pattern(uuid(11)), 0, 8},
                {uuid(32), uuid(3), ClipSource::audio(uuid(41)), 4, 2.5}};
  song.audioAssets = {{"Voice", uuid(41), "take.caf", 44100, 88200, 1}};
  song.loop = LoopRange{0, 8};
  return song;
}

rc::Gen<Song> validSongs() { return rc::gen::exec(anySong); }

std::string applyRandomEdit(Song& song) {
  const auto& [name, edit] = edits[below(static_cast<int>(std::size(edits)))];
  if (const auto* ofSong = std::get_if<SongEdit>(&edit)) {
    (*ofSong)(song);
  } else if (!song.patterns.empty()) {
    Pattern pattern = oneOf(song.patterns);
    std::get<PatternEdit>(edit)(pattern);
    song.update(pattern);
  }
  return name;
}

}  // namespace velmora::testing
