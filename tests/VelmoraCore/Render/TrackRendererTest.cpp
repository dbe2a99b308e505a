#include <gtest/gtest.h>
#include <random>

#include "VelmoraCore/Instruments/InstrumentFactory.h"
#include "VelmoraCore/Render/AudioClipRenderer.h"
#include "VelmoraCore/Render/LiveNoteRenderer.h"
#include "VelmoraCore/Render/TrackRenderer.h"
#include "tests/VelmoraCore/Render/Score.h"

namespace velmora {
namespace {

using testing::RecordingInstrument;
using testing::songOf;

/// A track played by hand, block after block, at 48000 Hz; at 120 bpm a beat is 24000 frames.
struct Player {
  static constexpr double rate = 48000;

  Song song;
  PlaybackMode mode;
  TransportController transport;
  std::string log;
  TrackRenderer renderer;
  RenderSnapshot snapshot;
  std::vector<float> block;
  double sampleTime = 0;

  Player(Song s, PlaybackMode m)
      : song(std::move(s)),
        mode(m),
        renderer(song.tracks[0].id, std::make_unique<RecordingInstrument>(log)),
        snapshot(song, mode, {}) {
    renderer.prepare(rate, 4096);
    transport.setBPM(song.bpm);
    transport.setMode(mode);
    transport.setLoop(song.loop);
    transport.play();
  }

  void publish() { snapshot = RenderSnapshot(song, mode, {}); }

  Player& render(int frameCount) {
    block.assign(static_cast<std::size_t>(frameCount), 7);
    renderer.render(block, transport.timing(sampleTime, frameCount, rate), snapshot);
    sampleTime += frameCount;
    return *this;
  }
};

TEST(TrackRendererTest, ANoteOnASeamSoundsOnce) {
  Player player(songOf(120, 4, "60@0+1 62@1+1"), PlaybackMode::pattern);
  player.render(12000).render(12000).render(24000).render(24000);
  EXPECT_EQ(player.log, "on60@0 off60@24000 on62@24000 off62@48000");
}

TEST(TrackRendererTest, ASongLoopReleasesWhatSoundsAtItsWrap) {
  Song song = songOf(120, 4, "60@0.5+3 62@3.99+0.01", "0+4");
  song.loop = LoopRange{0, 4};
  Player player(song, PlaybackMode::song);
  player.transport.seek(4 - 300 / 24000.0);
  player.render(512).render(12000);
  // 3.99 beats lie 60 frames past the seek; the off of that note lies on the wrap itself.
  EXPECT_EQ(player.log, "on62@60 off62@300 on60@12300");
}

TEST(TrackRendererTest, AShortPatternWrapsManyTimesInABlock) {
  Player player(songOf(300, 0.25, "60@0+0.125"), PlaybackMode::pattern);  // 2400 frames a turn
  player.render(4096).render(4096);
  EXPECT_EQ(player.log, "on60@0 off60@1200 on60@2400 off60@3600 on60@4800 off60@6000 on60@7200");
}

TEST(TrackRendererTest, JumpsCutNotesOnce) {
  Player player(songOf(120, 4, "60@0+4 62@2+1"), PlaybackMode::pattern);
  player.render(512);
  player.transport.seek(1.99);
  player.render(512);
  player.transport.setBPM(60);  // pivots without a jump
  player.render(512);
  player.transport.stop();
  player.render(512).render(512);
  player.transport.setMode(PlaybackMode::song);
  player.transport.play();
  player.render(512);
  EXPECT_EQ(player.log, "on60@0 cut@512 on62@752 cut@1536 on60@2560");
}

TEST(TrackRendererTest, AnEditReleasesItsOwnTrackOnly) {
  Player player(songOf(120, 4, "60@0+4 64@0+4"), PlaybackMode::pattern);
  player.render(512);
  const UUID other = player.song.addTrack(TrackKind::synth(SynthPreset::pad)).id;
  Pattern elsewhere = player.song.patternsForTrack(other)[0];
  elsewhere.insertNote(60, 100, 0, 1, 1);
  player.song.update(elsewhere);
  player.publish();
  player.render(512);
  EXPECT_EQ(player.log, "on60@0 on64@0");
  Pattern pattern = player.song.patterns[0];
  pattern.insertNote(67, 100, 3, 1, 1);
  player.song.update(pattern);
  player.publish();
  player.render(512);
  EXPECT_EQ(player.log, "on60@0 on64@0 off60@1024 off64@1024");
}

TEST(TrackRendererTest, NonsenseRendersNoEvents) {
  Song song = songOf(120, 4, "60@0+1", "0+4");
  song.loop = LoopRange{0, 1e-6};  // shorter than a frame
  Player player(song, PlaybackMode::song);
  player.render(512);
  EXPECT_EQ(player.log, "");
  player.song.loop.reset();
  player.transport.setLoop({});
  player.transport.seek(NAN);
  player.render(512);
  player.transport.seek(0);
  player.render(512);
  EXPECT_EQ(player.log, "on60@1024") << "an invalid block starts afresh without a cut";
}

TEST(TrackRendererTest, AMutedTrackRunsOnInSilence) {
  Player player(songOf(120, 4, "60@0+1"), PlaybackMode::pattern);
  Track track = player.song.tracks[0];
  track.isMuted = true;
  player.song.update(track);
  player.publish();
  player.render(512);
  EXPECT_EQ(player.log, "on60@0");
  EXPECT_EQ(player.block, std::vector<float>(512, 0));
  player.snapshot = *RenderSnapshot::empty();
  player.render(64);
  EXPECT_EQ(player.log, "on60@0 cut@512");
  EXPECT_EQ(player.block, std::vector<float>(64, 1)) << "tails ring out without a track";
}

/// The whole way from the song to the sample, in blocks of the given sizes.
std::vector<float> rendered(const Song& song, const std::function<int()>& nextSize) {
  TransportController transport;
  transport.setBPM(song.bpm);
  transport.setMode(PlaybackMode::song);
  transport.setLoop(song.loop);
  transport.play();
  TrackRenderer renderer(song.tracks[0].id, InstrumentFactory::make(song.tracks[0].kind));
  renderer.prepare(44100, 4096);
  const RenderSnapshot snapshot(song, PlaybackMode::song, {});
  std::vector<float> result(200000);
  for (std::size_t done = 0; done < result.size();) {
    const auto size = std::min(static_cast<std::size_t>(nextSize()), result.size() - done);
    renderer.render(std::span(result).subspan(done, size),
                    transport.timing(static_cast<double>(done), static_cast<int>(size), 44100), snapshot);
    done += size;
  }
  return result;
}

TEST(TrackRendererTest, TheOutputDoesNotDependOnTheBlockSize) {
  // Tempos at which no event falls exactly between two frames, where a seam may decide for either.
  for (const double bpm : {131.7, 299.3}) {
    Song song =
        songOf(bpm, 3.3, "60@0+1 64@0.37+2 67@0.5+2.8 72@1.13+0.11 60@2.71+0.4 48@3.1+0.2", "0+7.9 9.2+2");
    song.loop = LoopRange{0.7, 10.9};
    const auto whole = rendered(song, [] { return 4096; });
    EXPECT_TRUE(std::any_of(whole.begin(), whole.end(), [](float x) { return std::abs(x) > 0.1F; }));
    for (const int size : {1, 15, 64, 127, 512})
      EXPECT_EQ(rendered(song, [size] { return size; }), whole) << size;
    std::mt19937 random(5);
    EXPECT_EQ(rendered(song, [&random] { return static_cast<int>(1 + random() % 3000); }), whole);
  }
}

TEST(LiveNoteRendererTest, FollowsTheHeldKeys) {
  std::string log;
  LiveNoteRenderer live(std::make_unique<RecordingInstrument>(log));
  std::vector<float> block(100);
  const auto render = [&] { live.render(block); };
  live.setKey(60, true);
  live.setKey(127, true);
  live.setKey(128, true);
  live.setKey(-1, true);
  render();
  live.setKey(60, false);
  live.setKey(64, true);
  live.setKey(64, false);  // within one block: unheard
  render();
  live.releaseAll();
  render();
  render();
  EXPECT_EQ(log, "on60@0 on127@0 off60@100 off127@200");
  EXPECT_EQ(block, std::vector<float>(100, 4)) << "adds to the buffer";
}

/// One second of a ramp, so that a sample tells its own position.
AudioSamples ramp(const UUID& id, double rate, std::size_t frames) {
  AudioSample sample{std::vector<float>(frames), rate};
  for (std::size_t i = 0; i < frames; ++i) sample.samples[i] = static_cast<float>(i);
  return {{id, std::make_shared<AudioSample>(std::move(sample))}};
}

TEST(AudioClipRendererTest, PlaysAtTheSpeedOfItsSource) {
  struct Row {
    double rate, bpm, clipStart, clipLength;
    std::optional<LoopRange> loop;
    double startBeat;
    std::vector<float> block;
  };
  const Row rows[] = {
      {48000, 120, 0, 4, {}, 0, {0, 1, 2, 3}},
      {48000, 240, 0, 4, {}, 0, {0, 1, 2, 3}},                   // the tempo doesn't change the pitch
      {24000, 120, 0, 4, {}, 0, {0, 0.5, 1, 1.5}},               // half the rate, half the steps
      {24000, 120, 0, 4, {}, 2 / 24000.0, {1, 1.5, 2, 2.5}},     // position follows from the beat
      {48000, 120, 2 / 24000.0, 4, {}, 0, {0, 0, 0, 1}},         // begins within the block
      {48000, 120, 0, 2 / 24000.0, {}, 0, {0, 1, 0, 0}},         // and ends within it
      {48000, 120, 0, 4, {}, 98 / 24000.0, {98, 99, 0, 0}},      // the sample is over
      {24000, 120, 0, 4, {}, 197 / 24000.0, {98.5, 99, 99, 0}},  // its last value is held
      {48000, 120, 2, 4, LoopRange{2 + 5 / 24000.0, 8}, 8 - 2 / 24000.0, {0, 0, 5, 6}},
      {0, 120, 0, 4, {}, 0, {0, 0, 0, 0}},
  };
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const Row& row = rows[i];
    Song song;
    const Track track = song.addTrack(TrackKind::audio());
    const UUID asset = UUID::random();
    song.update(Clip{UUID::random(), track.id, ClipSource::audio(asset), row.clipStart, row.clipLength});
    const RenderSnapshot snapshot(song, PlaybackMode::song, ramp(asset, row.rate, 100));
    std::vector<float> block(4);
    const RenderTiming timing{true, row.startBeat, row.bpm / 60 / 48000, PlaybackMode::song, row.loop};
    AudioClipRenderer::mix(block, timing, snapshot.trackSnapshot(track.id), 48000, 16);
    for (std::size_t n = 0; n < block.size(); ++n) EXPECT_NEAR(block[n], row.block[n], 1e-3F) << "row " << i;
  }
}

TEST(AudioClipRendererTest, IsSilentUnlessASongPlaysAudibly) {
  Song song;
  const Track track = song.addTrack(TrackKind::audio());
  const UUID asset = UUID::random();
  song.update(Clip{UUID::random(), track.id, ClipSource::audio(asset), 0, 4});
  const RenderSnapshot snapshot(song, PlaybackMode::song, ramp(asset, 48000, 100));
  TrackRenderSnapshot muted = *snapshot.tracks()[0];
  muted.isAudible = false;
  const RenderTiming good{true, 0, 120.0 / 60 / 48000, PlaybackMode::song, {}};
  const auto isSilent = [](const RenderTiming& timing, const TrackRenderSnapshot* t, double rate,
                           double length) {
    std::vector<float> block(16);
    AudioClipRenderer::mix(block, timing, t, rate, length);
    return block == std::vector<float>(16);
  };
  const TrackRenderSnapshot* clips = snapshot.tracks()[0].get();
  EXPECT_FALSE(isSilent(good, clips, 48000, 16));
  EXPECT_TRUE(isSilent(good, &muted, 48000, 16));
  EXPECT_TRUE(isSilent(good, nullptr, 48000, 16));
  EXPECT_TRUE(isSilent(good, clips, 0, 16));
  EXPECT_TRUE(isSilent(good, clips, 48000, 0));
  const auto changed = [&good](auto change) {
    RenderTiming timing = good;
    change(timing);
    return timing;
  };
  EXPECT_TRUE(isSilent(changed([](RenderTiming& t) { t.isPlaying = false; }), clips, 48000, 16));
  EXPECT_TRUE(isSilent(changed([](RenderTiming& t) { t.mode = PlaybackMode::pattern; }), clips, 48000, 16));
  EXPECT_TRUE(isSilent(changed([](RenderTiming& t) { t.startBeat = NAN; }), clips, 48000, 16));
  EXPECT_TRUE(isSilent(changed([](RenderTiming& t) { t.beatsPerFrame = INFINITY; }), clips, 48000, 16));
}

}  // namespace
}  // namespace velmora
