#include <algorithm>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "VelmoraCore/Render/RenderSnapshot.h"
#include "VelmoraCore/Render/SnapshotCompiler.h"
#include "VelmoraCore/Render/SnapshotStore.h"
#include "tests/VelmoraCore/Render/Score.h"
#include "tests/support/Songs.h"

namespace velmora {
namespace {

using testing::songOf;
using testing::textOf;

TEST(RenderSnapshotTest, PatternsKeepEveryOffInsideTheCycleAndClipsTileAndCut) {
  const struct {
    double length;
    const char* score;
    const char* clips;  // null: pattern mode
    const char* events;
  } rows[] = {
      {4, "", {}, ""},
      {4, "60@0+1 64@1+2", {}, "on60@0 off60@1 on64@1 off64@3"},
      {4, "60@1+1 40@2+1", {}, "on60@1 off60@2 on40@2 off40@3"},  // an off precedes an on of a lower pitch
      {4, "60@3+1", {}, "on60@3 off60@3.999999"},
      {4, "60@4+1 61@9+1", {}, ""},
      {4, "60@1+0", {}, "on60@1 off60@1.000001"},
      {4, "60@3.5+1", "8+16", "on60@11.5 off60@12 on60@15.5 off60@16 on60@19.5 off60@20 on60@23.5 off60@24"},
      {4, "60@1+2 61@2+1 62@3+1", "0+2", "on60@1 off60@2"},
      {4, "60@0+4", "0+6", "on60@0 off60@4 on60@4 off60@6"},
      {1.5, "60@0+0.5 61@1+0.5", "1+2", "on60@1 off60@1.5 on61@2 off61@2.5 on60@2.5 off60@3"},
      {4, "60@0+1", "4+1 0+1", "on60@0 off60@1 on60@4 off60@5"},
      {0.2, "60@0+0.1", "0+16384", ""},  // more than 65536 repeats
  };
  for (const auto& row : rows) {
    const bool isSong = row.clips;
    const Song song = songOf(120, row.length, row.score, isSong ? row.clips : "");
    const RenderSnapshot snapshot(song, isSong ? PlaybackMode::song : PlaybackMode::pattern, {});
    EXPECT_EQ(textOf(snapshot.tracks()[0]->events), row.events) << row.score;
    EXPECT_EQ(snapshot.tracks()[0]->patternLoopLength.value_or(0), isSong ? 0 : row.length);
  }
}

/// The song with these velocities of its first pattern's notes.
Song withVelocities(Song song, std::initializer_list<std::uint8_t> velocities) {
  Pattern pattern = song.patterns[0];
  std::ranges::transform(pattern.notes, velocities, pattern.notes.write().begin(),
                         [](Note note, auto velocity) {
                           note.velocity = velocity;
                           return note;
                         });
  song.update(pattern);
  return song;
}

TEST(RenderSnapshotTest, VelocitiesAreClamped) {
  const Song song = withVelocities(songOf(120, 4, "60@0+1 61@1+1"), {0, 255});
  const RenderSnapshot snapshot(song, PlaybackMode::pattern, {});
  EXPECT_EQ(snapshot.tracks()[0]->events[0].velocity, 1);
  EXPECT_EQ(snapshot.tracks()[0]->events[3].velocity, 127);
}

TEST(RenderSnapshotTest, MuteWinsOverSolo) {
  // Tracks muted, soloed, both or neither, and where they are heard.
  const std::pair<std::string, std::string> rows[] = {{"---", "xxx"}, {"m--", "-xx"}, {"-s-", "-x-"},
                                                      {"--s", "--x"}, {"bs-", "-x-"}, {"b--", "---"}};
  for (const auto& [states, expected] : rows) {
    Song song;
    for (const char state : states) {
      Track track = song.addTrack(song.tracks.empty() ? TrackKind::audio() : TrackKind::drums());
      track.isMuted = state == 'm' || state == 'b';
      track.isSoloed = state == 's' || state == 'b';
      song.update(track);
    }
    std::string audible;
    const RenderSnapshot snapshot(song, PlaybackMode::song, {});
    for (const auto& track : snapshot.tracks()) audible += track->isAudible ? 'x' : '-';
    EXPECT_EQ(audible, expected) << states;
  }
}

TEST(RenderSnapshotTest, AudioClipsNeedTheirSampleAndSongMode) {
  Song song;
  const Track track = song.addTrack(TrackKind::audio());
  const UUID loaded = UUID::random(), missing = UUID::random();
  for (const UUID& id : {loaded, missing})
    song.update(Clip{UUID::random(), track.id, ClipSource::audio(id), 2, 3});
  const AudioSamples samples = {{loaded, std::make_shared<AudioSample>(AudioSample{{1, 2}, 44100})}};
  const RenderSnapshot inSong(song, PlaybackMode::song, samples);
  ASSERT_EQ(inSong.tracks()[0]->audioClips.size(), 1U);
  EXPECT_EQ(inSong.tracks()[0]->audioClips[0].sample, samples.at(loaded));
  EXPECT_TRUE(inSong.tracks()[0]->events.empty());
  EXPECT_TRUE(RenderSnapshot(song, PlaybackMode::pattern, samples).tracks()[0]->audioClips.empty());
}

void expectEqual(const RenderSnapshot& a, const RenderSnapshot& b) {
  const auto areSame = [](const auto& x, const auto& y) { return *x == *y; };
  RC_ASSERT(a.mode() == b.mode() && a.songLengthBeats() == b.songLengthBeats());
  RC_ASSERT(std::ranges::equal(a.tracks(), b.tracks(), areSame));
  for (const auto& track : a.tracks()) RC_ASSERT(a.trackSnapshot(track->trackID) == track.get());
}

RC_GTEST_PROP(SnapshotCompilerTest, AnIncrementalCompileEqualsAFullOne, ()) {
  Song song = *testing::validSongs();
  SnapshotCompiler compiler;
  AudioSamples samples;
  for (int step = 0; step < 12; ++step) {
    const auto mode = *rc::gen::element(PlaybackMode::song, PlaybackMode::song, PlaybackMode::pattern);
    if (!song.audioAssets.empty() && *rc::gen::arbitrary<bool>()) {
      samples[song.audioAssets[0].id] = std::make_shared<AudioSample>();
    }
    expectEqual(*compiler.compile(song, mode, samples), RenderSnapshot(song, mode, samples));
    testing::applyRandomEdit(song);
  }
}

TEST(SnapshotCompilerTest, WhatDidNotChangeIsKept) {
  Song song = songOf(120, 4, "60@0+1", "0+16");
  song.addTrack(TrackKind::drums());
  SnapshotCompiler compiler;
  const auto compiled = [&](const Song& s) { return compiler.compile(s, PlaybackMode::song, {})->tracks(); };
  const auto before = compiled(song);
  song.tracks.write()[0].volume = 0.5F;
  const auto mixed = compiled(song);
  EXPECT_TRUE(mixed[0]->events.sharesStorage(before[0]->events));
  EXPECT_EQ(mixed[0]->eventsFingerprint, before[0]->eventsFingerprint);
  EXPECT_EQ(mixed[0]->volume, 0.5F);
  EXPECT_EQ(mixed[1], before[1]);
  EXPECT_NE(compiled(withVelocities(song, {99}))[0]->eventsFingerprint, before[0]->eventsFingerprint);
}

TEST(SnapshotStoreTest, KeepsThePreviousSnapshotForOnePublish) {
  SnapshotStore store;
  EXPECT_EQ(store.current(), RenderSnapshot::empty());
  auto snapshot = std::make_shared<const RenderSnapshot>(PlaybackMode::song, 32, RenderSnapshot::Tracks{});
  const std::weak_ptr watcher(snapshot);
  store.publish(std::move(snapshot));
  EXPECT_EQ(store.current(), watcher.lock());
  store.publish(RenderSnapshot::empty());
  EXPECT_FALSE(watcher.expired());
  store.publish(RenderSnapshot::empty());
  EXPECT_TRUE(watcher.expired());
}

}  // namespace
}  // namespace velmora
