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

TEST(RenderSnapshotTest, PatternModeKeepsEveryOffInsideTheCycle) {
  struct Row {
    double length;
    const char* score;
    const char* events;
  };
  const Row rows[] = {
      {4, "", ""},
      {4, "60@0+1 64@1+2", "on60@0 off60@1 on64@1 off64@3"},
      {4, "60@1+1 40@2+1", "on60@1 off60@2 on40@2 off40@3"},  // an off precedes an on of a lower pitch
      {4, "60@3+1", "on60@3 off60@4"},                        // shown rounded; see below
      {4, "60@4+1 61@9+1", ""},
      {4, "60@1+0", "on60@1 off60@1"},
  };
  for (const Row& row : rows) {
    const RenderSnapshot snapshot(songOf(120, row.length, row.score), PlaybackMode::pattern, {});
    EXPECT_EQ(textOf(snapshot.tracks()[0]->events), row.events) << row.score;
    EXPECT_EQ(snapshot.tracks()[0]->patternLoopLength, row.length);
  }
  const RenderSnapshot atEnd(songOf(120, 4, "60@3+1"), PlaybackMode::pattern, {});
  EXPECT_EQ(atEnd.tracks()[0]->events.back().beat, 4 - 0.000001);
  const RenderSnapshot atOnce(songOf(120, 4, "60@1+0"), PlaybackMode::pattern, {});
  EXPECT_EQ(atOnce.tracks()[0]->events.back().beat, 1 + 0.000001);
}

TEST(RenderSnapshotTest, SongModeTilesAndCuts) {
  struct Row {
    double length;
    const char* score;
    const char* clips;
    const char* events;
  };
  const Row rows[] = {
      {4, "60@3.5+1", "8+16", "on60@11.5 off60@12 on60@15.5 off60@16 on60@19.5 off60@20 on60@23.5 off60@24"},
      {4, "60@1+2 61@2+1 62@3+1", "0+2", "on60@1 off60@2"},
      {4, "60@0+4", "0+6", "on60@0 off60@4 on60@4 off60@6"},
      {1.5, "60@0+0.5 61@1+0.5", "1+2", "on60@1 off60@1.5 on61@2 off61@2.5 on60@2.5 off60@3"},
      {4, "60@0+1", "4+1 0+1", "on60@0 off60@1 on60@4 off60@5"},
      {0.2, "60@0+0.1", "0+16384", ""},  // more than 65536 repeats
  };
  for (const Row& row : rows) {
    const RenderSnapshot snapshot(songOf(120, row.length, row.score, row.clips), PlaybackMode::song, {});
    EXPECT_EQ(textOf(snapshot.tracks()[0]->events), row.events) << row.score << " in " << row.clips;
    EXPECT_FALSE(snapshot.tracks()[0]->patternLoopLength);
  }
}

TEST(RenderSnapshotTest, VelocitiesAreClamped) {
  Song song = songOf(120, 4, "60@0+1 61@1+1");
  Pattern pattern = song.patterns[0];
  pattern.notes.write()[0].velocity = 0;
  pattern.notes.write()[1].velocity = 255;
  song.update(pattern);
  const RenderSnapshot snapshot(song, PlaybackMode::pattern, {});
  EXPECT_EQ(snapshot.tracks()[0]->events[0].velocity, 1);
  EXPECT_EQ(snapshot.tracks()[0]->events[3].velocity, 127);
}

TEST(RenderSnapshotTest, MuteWinsOverSolo) {
  struct Row {
    const char* tracks;   // m muted, s soloed, b both, - neither
    const char* audible;  // x where heard
  };
  const Row rows[] = {{"---", "xxx"}, {"m--", "-xx"}, {"-s-", "-x-"},
                      {"--s", "--x"}, {"bs-", "-x-"}, {"b--", "---"}};
  for (const Row& row : rows) {
    Song song;
    for (const char* c = row.tracks; *c; ++c) {
      Track track = song.addTrack(c == row.tracks ? TrackKind::audio() : TrackKind::drums());
      track.isMuted = *c == 'm' || *c == 'b';
      track.isSoloed = *c == 's' || *c == 'b';
      song.update(track);
    }
    std::string audible;
    const RenderSnapshot snapshot(song, PlaybackMode::song, {});
    for (const auto& track : snapshot.tracks()) audible += track->isAudible ? 'x' : '-';
    EXPECT_EQ(audible, row.audible) << row.tracks;
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

TEST(RenderSnapshotTest, OnlyEventsEnterTheFingerprint) {
  const Song song = songOf(120, 4, "60@0+1", "0+4");
  const auto print = [](const Song& s) {
    return RenderSnapshot(s, PlaybackMode::song, {}).tracks()[0]->eventsFingerprint;
  };
  Song mixed = song;
  Track track = song.tracks[0];
  track.volume = 0.1F;
  track.isMuted = true;
  mixed.update(track);
  EXPECT_EQ(print(mixed), print(song));
  Song edited = song;
  Pattern pattern = song.patterns[0];
  pattern.notes.write()[0].velocity = 99;
  edited.update(pattern);
  EXPECT_NE(print(edited), print(song));
}

void expectEqual(const RenderSnapshot& a, const RenderSnapshot& b) {
  RC_ASSERT(a.mode() == b.mode());
  RC_ASSERT(a.songLengthBeats() == b.songLengthBeats());
  RC_ASSERT(a.tracks().size() == b.tracks().size());
  for (std::size_t i = 0; i < a.tracks().size(); ++i) {
    RC_ASSERT(*a.tracks()[i] == *b.tracks()[i]);
    RC_ASSERT(a.trackSnapshot(a.tracks()[i]->trackID) == a.tracks()[i].get());
  }
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
  const auto first = compiler.compile(song, PlaybackMode::song, {});
  Track track = song.tracks[0];
  track.volume = 0.5F;
  song.update(track);
  const auto second = compiler.compile(song, PlaybackMode::song, {});
  EXPECT_TRUE(second->tracks()[0]->events.sharesStorage(first->tracks()[0]->events));
  EXPECT_EQ(second->tracks()[0]->volume, 0.5F);
  EXPECT_EQ(second->tracks()[1], first->tracks()[1]);
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
