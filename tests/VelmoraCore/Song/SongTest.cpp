#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <rapidcheck/gtest.h>

#include "VelmoraCore/Song/Song.h"
#include "VelmoraCore/Song/SongJSON.h"
#include "VelmoraCore/Song/SongValidation.h"
#include "tests/support/Songs.h"

namespace velmora::testing {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(Enumerations, HaveTheirTexts) {
  std::string texts;
  for (const auto preset : allSynthPresets()) {
    texts += std::string(storedValue(preset)) + "=" + std::string(label(preset)) + " ";
    EXPECT_EQ(synthPreset(storedValue(preset)), preset);
  }
  for (const auto sound : allDrumSounds()) {
    texts += std::to_string(pitch(sound)) + "=" + std::string(label(sound)) + " ";
    EXPECT_EQ(drumSound(pitch(sound)), sound);
  }
  for (const auto color : allTrackColors()) {
    texts += std::string(storedValue(color)) + " ";
    EXPECT_EQ(trackColor(storedValue(color)), color);
  }
  EXPECT_EQ(texts,
            "miniSynth=MiniSynth bass=Bass pad=Pad lead=Lead keys=Keys "
            "36=Kick 37=Rim 38=Snare 39=Clap 42=Closed Hat 45=Low Tom 46=Open Hat 47=Perc "
            "blue orange red pink green purple teal yellow ");
  EXPECT_FALSE(synthPreset("Bass") || trackColor("mauve") || drumSound(40) || drumSound(36 + 256));
}

TEST(Song, StartsWithOneDrumTrack) {
  const Song song = Song::empty("Untitled Beat");
  const UUID track = song.tracks.front().id, pattern = song.patterns.front().id;
  Song expected{.id = song.id, .name = "Untitled Beat", .bpm = 128, .masterVolume = 0.9F};
  expected.tracks = {{.id = track, .name = "Drums 1", .selectedPatternID = pattern}};
  expected.patterns = {{.id = pattern, .trackID = track, .name = "Pattern 1", .lengthBeats = 4}};
  EXPECT_EQ(song, expected);
  EXPECT_EQ(song.songLengthBeats(), 16);
}

std::string score(const Pattern& pattern) {
  std::ostringstream text;
  for (const Note& one : pattern.notes) {
    text << one.startBeat << ":" << int{one.pitch} << "x" << one.durationBeats << "@" << int{one.velocity}
         << " ";
  }
  return text.str();
}

TEST(Song, DemoIsTheWrittenOne) {
  const Song song = Song::demo();
  EXPECT_EQ(
      score(song.patterns[0]),
      "0:36x0.25@127 0:42x0.25@100 0.5:42x0.25@72 1:36x0.25@112 1:38x0.25@108 1:42x0.25@100 1.5:42x0.25@72 "
      "2:36x0.25@112 2:42x0.25@100 2.5:42x0.25@72 3:36x0.25@112 3:38x0.25@118 3:42x0.25@100 3.5:46x0.5@96 ");
  EXPECT_EQ(score(song.patterns[1]), "0:48x2@96 0:51x2@90 0:55x2@90 2:44x2@96 2:48x2@90 2:51x2@90 ");
  EXPECT_EQ(song.name + " " + song.tracks[0].name + " " + song.tracks[1].name, "Demo Drums Chords");
  EXPECT_EQ(song.tracks[1].kind, TrackKind::synth(SynthPreset::pad));
  for (std::size_t index = 0; index < 2; ++index) {
    const Clip& clip = song.clips[index];
    const ClipSource source = ClipSource::pattern(song.patterns[index].id);
    EXPECT_EQ(clip, (Clip{clip.id, song.tracks[index].id, source, 0, 16}));
  }
  EXPECT_NO_THROW(validateSong(song));
}

TEST(Song, LengthIsWholeBarsAndAtLeastFour) {
  for (const auto& [endBeat, length] :
       {std::pair(3.0, 16.0), {16, 16}, {16.5, 20}, {20, 20}, {16384, 16384}}) {
    Song song = sampleSong();
    song.update(Clip{uuid(50), uuid(1), ClipSource::pattern(uuid(11)), endBeat - 1, 1});
    EXPECT_EQ(song.songLengthBeats(), length) << endBeat;
  }
}

TEST(Song, NewTracksCycleColorsAndCountTheirFamily) {
  Song song;
  std::string names;
  for (const TrackKind kind : {TrackKind::synth(SynthPreset::pad), TrackKind::synth(SynthPreset::keys),
                               TrackKind::drums(), TrackKind::audio()})
    names += song.addTrack(kind).name + ", ";
  EXPECT_EQ(names + song.addTrack(TrackKind::drums(), "").name, "Synth 1, Synth 2, Drums 1, Audio 1, ");
  EXPECT_EQ(song.patterns.size(), 4U) << "audio tracks own no pattern";
  while (song.tracks.size() < 10) song.addTrack(TrackKind::audio());
  EXPECT_EQ(song.tracks[8].color, TrackColor::blue);
  EXPECT_EQ(song.tracks[9].color, TrackColor::orange);

  Song drums = Song::empty("");
  drums.removeTrack(drums.tracks[0].id);
  EXPECT_EQ(drums.addTrack(TrackKind::drums()).name, "Drums 1");
}

TEST(Song, AddedPatternsAreSelectedOnlyWhereNoneIsAndCopiesAlways) {
  Song song = sampleSong();
  EXPECT_EQ(song.addPattern(uuid(1)).name, "Pattern 2");
  EXPECT_EQ(song.track(uuid(1))->selectedPatternID, uuid(11));
  const Pattern first = song.addPattern(uuid(2), "Mine");
  EXPECT_EQ(first.name, "Mine");
  EXPECT_EQ(song.track(uuid(2))->selectedPatternID, first.id);
  for (const char* name : {"Beat Copy", "Beat Copy 2", "Beat Copy 3"}) {
    const Pattern copy = *song.duplicatePattern(uuid(11));
    EXPECT_EQ(copy, (Pattern{copy.id, uuid(1), name, 4, song.pattern(uuid(11))->notes}));
    EXPECT_EQ(song.track(uuid(1))->selectedPatternID, copy.id);
  }
  const Pattern onAudio = song.addPattern(uuid(3));
  EXPECT_FALSE(song.duplicatePattern(onAudio.id) || song.duplicatePattern(uuid(77)));
  EXPECT_FALSE(song.placePattern(onAudio.id, 0));
  const Song before = song;
  song.addPattern(uuid(77));
  EXPECT_EQ(song, before) << "a pattern without a track would make the document invalid";
}

TEST(Song, PlacesWholePatternsOnWholeBeats) {
  struct Row {
    double at, patternLength, startBeat, lengthBeats;
  };
  for (const Row& row : {Row{3.9, 4, 3, 4}, {-2, 4, 0, 4}, {20000, 4, 16383, 1}, {1, 1.1, 1, 1.1}}) {
    Song song = sampleSong();
    Pattern pattern = *song.pattern(uuid(11));
    pattern.lengthBeats = row.patternLength;
    song.update(pattern);
    const auto id = song.placePattern(uuid(11), row.at);
    ASSERT_TRUE(id);
    EXPECT_EQ(*song.clip(*id),
              (Clip{*id, uuid(1), ClipSource::pattern(uuid(11)), row.startBeat, row.lengthBeats}));
  }
  Song song = sampleSong();
  EXPECT_FALSE(song.placePattern(uuid(11), infinity) || song.placePattern(uuid(77), 0));
}

TEST(Song, EditedClipsRoundToNearestWholeBeats) {
  struct Row {
    ClipEdit edit;
    double startBeat, lengthBeats;
  };
  const std::vector<Row> rows{
      {{{}, 2.5, {}}, 4, 3},           {{2.5, {}, {}}, 3, 2.5},    {{-7, 0.2, {}}, 0, 1},
      {{20000, {}, {}}, 16381.5, 2.5}, {{5, 1e9, {}}, 0, 16384},   {{std::nan(""), 3, {}}, 4, 2.5},
      {{5, infinity, {}}, 4, 2.5},     {{5, {}, uuid(1)}, 4, 2.5}, {{5, {}, uuid(77)}, 4, 2.5},
      {{5, {}, uuid(3)}, 5, 2.5},      {{{}, {}, {}}, 4, 2.5},
  };
  for (const Row& row : rows) {
    Song song = sampleSong();
    song.editClip(uuid(32), row.edit);
    EXPECT_EQ(*song.clip(uuid(32)),
              (Clip{uuid(32), uuid(3), ClipSource::audio(uuid(41)), row.startBeat, row.lengthBeats}));
  }
}

TEST(Song, AClipTakesACopyOfItsPatternToAnotherTrackOfTheFamily) {
  Song song = sampleSong();
  const Track other = song.addTrack(TrackKind::drums());
  song.editClip(uuid(31), {.trackID = other.id});
  const Pattern* copy = song.pattern(song.clip(uuid(31))->source.id);
  EXPECT_EQ(song.clip(uuid(31))->trackID, other.id);
  EXPECT_EQ(*copy, (Pattern{copy->id, other.id, "Beat", 4, song.pattern(uuid(11))->notes}));
  EXPECT_NE(copy->id, uuid(11));
  EXPECT_EQ(*song.track(other.id), other) << "the selection stays";

  const Song before = song;
  song.editClip(uuid(31), {.startBeat = 9, .trackID = uuid(2)});
  EXPECT_EQ(song, before) << "drums don't move to a synthesizer";
}

TEST(Song, RemovalTakesDependentsAlong) {
  Song song = sampleSong();
  song.clips.write().push_back(
      {uuid(33), uuid(2), ClipSource::pattern(uuid(11)), 0, 1});  // of a foreign pattern
  song.removeTrack(uuid(1));
  EXPECT_FALSE(song.track(uuid(1)) || song.pattern(uuid(11)) || song.clip(uuid(31)) || song.clip(uuid(33)));
  song.removeTrack(uuid(3));
  EXPECT_TRUE(song.clips.empty());
  EXPECT_EQ(song.audioAssets.size(), 1U);

  song = sampleSong();
  const Pattern next = song.addPattern(uuid(1));
  song.removePattern(uuid(11));
  EXPECT_EQ(song.track(uuid(1))->selectedPatternID, next.id);
  EXPECT_FALSE(song.clip(uuid(31)));
  song.removePattern(next.id);
  EXPECT_EQ(song.track(uuid(1))->selectedPatternID, std::nullopt);
}

TEST(Song, ArgumentsMayLieInTheSongItself) {
  Song song = sampleSong();
  const Song copy = song;
  song.removePattern(song.patterns[0].id);
  song.removeTrack(song.tracks[0].id);
  song.removeClip(song.clips[0].id);
  EXPECT_EQ(song.tracks, SharedList<Track>({copy.tracks[1], copy.tracks[2]}));
  EXPECT_EQ(song.patterns, SharedList<Pattern>({copy.patterns[1]}));
  EXPECT_TRUE(song.clips.empty());
  EXPECT_EQ(copy, sampleSong());
}

TEST(Song, RenamingTrimsWhiteSpace) {
  Song song = sampleSong();
  for (const char* text : {" \t\r\n\xC2\xA0New name\xE3\x80\x80\xE2\x80\xA9 ", " \n ", ""}) {
    song.renamePattern(uuid(11), text);
    EXPECT_EQ(song.pattern(uuid(11))->name, "New name");
  }
}

TEST(Song, LoopsAreWholeBeats) {
  struct Row {
    double start, end, storedStart, storedEnd;
  };
  for (const Row& row : {Row{3.4, 3.5, 3, 4},
                         {20000, 20000, 16383, 16384},
                         {8, 8, 8, 9},
                         {16384, 16384, 16383, 16384},
                         {-3, 2.5, 0, 3},
                         {std::nan(""), 4, 1, 2},
                         {0, infinity, 1, 2}}) {
    Song song = sampleSong();
    song.loop = LoopRange{1, 2};
    song.setLoop(row.start, row.end);
    EXPECT_EQ(*song.loop, (LoopRange{row.storedStart, row.storedEnd})) << row.start << " " << row.end;
  }
}

TEST(Song, EditsThatChangeNothingKeepTheStorageShared) {
  Song song = sampleSong();
  const Song before = song;
  song.update(*song.track(uuid(1)));
  song.update(*song.pattern(uuid(11)));
  song.update(*song.clip(uuid(32)));
  song.editClip(uuid(31), {.startBeat = 0.4});
  song.renamePattern(uuid(11), " Beat ");
  song.selectPattern(uuid(11), uuid(1));
  song.selectPattern(uuid(12), uuid(1));
  song.removeClip(uuid(77));
  song.removeTrack(uuid(77));
  song.removePattern(uuid(77));
  Pattern pattern = song.patterns[0];
  pattern.editNote(uuid(21), {.startBeat = 0.1}, 0.25);
  pattern.removeNote(uuid(77));
  pattern.setStepVelocity(DrumSound::kick, 0, 127);
  pattern.toggleStep(DrumSound::kick, 16, 100);
  EXPECT_TRUE(pattern.notes.sharesStorage(before.patterns[0].notes));
  EXPECT_TRUE(song.tracks.sharesStorage(before.tracks) && song.patterns.sharesStorage(before.patterns) &&
              song.clips.sharesStorage(before.clips));
}

RC_GTEST_PROP(SongEdits, keepTheDocumentValidAndItsCopiesUntouched, ()) {
  Song song = *validSongs();
  validateSong(song);
  for (int left = 12; left > 0; --left) {
    const Song copy = song;
    const std::string text = encodeSong(song);
    const std::string name = applyRandomEdit(song);
    RC_LOG() << name << "\n";
    validateSong(song);
    RC_ASSERT(encodeSong(copy) == text);
  }
}

}  // namespace
}  // namespace velmora::testing
