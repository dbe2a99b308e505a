#include <cmath>
#include <gmock/gmock.h>
#include <numeric>
#include <random>

#include "VelmoraCore/Instruments/InstrumentFactory.h"
#include "VelmoraCore/Render/AudioClipRenderer.h"
#include "VelmoraCore/Render/LiveNoteRenderer.h"
#include "VelmoraCore/Render/TrackRenderer.h"
#include "tests/VelmoraCore/Render/Score.h"

namespace velmora {
namespace {

using ::testing::Each;
using ::testing::FloatNear;
using ::testing::Pointwise;
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

  Player(Song s, PlaybackMode m, std::unique_ptr<Instrument> instrument = nullptr)
      : song(std::move(s)),
        mode(m),
        renderer(song.tracks[0].id,
                 instrument ? std::move(instrument) : std::make_unique<RecordingInstrument>(log)),
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

/// What the instrument hears in blocks of these sizes.
std::string heard(const Song& song, PlaybackMode mode, double startBeat, std::initializer_list<int> blocks) {
  Player player(song, mode);
  player.transport.seek(startBeat);
  for (const int frameCount : blocks) player.render(frameCount);
  return player.log;
}

TEST(TrackRendererTest, PlaysEachEventOnceWhateverTheSeamsAndWraps) {
  EXPECT_EQ(heard(songOf(120, 4, "60@0+1 62@1+1"), PlaybackMode::pattern, 0, {12000, 12000, 24000, 24000}),
            "on60@0 off60@24000 on62@24000 off62@48000");
  EXPECT_EQ(heard(songOf(300, 0.25, "60@0+0.125"), PlaybackMode::pattern, 0, {4096, 4096}),  // 2400 a turn
            "on60@0 off60@1200 on60@2400 off60@3600 on60@4800 off60@6000 on60@7200");
  Song looped = songOf(120, 4, "60@0.5+3 62@3.99+0.01", "0+4");
  looped.loop = LoopRange{0, 4};
  // 3.99 beats lie 60 frames past the start; the off of that note lies on the wrap itself.
  EXPECT_EQ(heard(looped, PlaybackMode::song, 4 - 300 / 24000.0, {512, 12000}),
            "on62@60 off62@300 on60@12300");
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
  player.song.addTrack(TrackKind::synth(SynthPreset::pad));
  for (const std::size_t edited : {1, 0}) {
    player.song.patterns.write()[edited].insertNote(67, 100, 3, 1, 1);
    player.publish();
    player.render(512);
  }
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
  player.song.tracks.write()[0].isMuted = true;
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
std::vector<float> rendered(const Song& song, const std::function<std::size_t()>& nextSize) {
  Player player(song, PlaybackMode::song, InstrumentFactory::make(song.tracks[0].kind));
  std::vector<float> result;
  while (result.size() < 200000) {
    player.render(static_cast<int>(std::min(nextSize(), 200000 - result.size())));
    result.insert(result.end(), player.block.begin(), player.block.end());
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
    for (const std::size_t size : {1, 15, 64, 127, 512})
      EXPECT_EQ(rendered(song, [size] { return size; }), whole) << size;
    std::mt19937 random(5);
    EXPECT_EQ(rendered(song, [&random] { return 1 + random() % 3000; }), whole);
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

/// A track with one clip of a hundred frames, each of which tells its own position.
struct Ramp {
  Ramp(double rate, double clipStart, double clipLength) {
    AudioSample sample{std::vector<float>(100), rate};
    std::iota(sample.samples.begin(), sample.samples.end(), 0.0F);
    Song song;
    const UUID asset = UUID::random(), trackID = song.addTrack(TrackKind::audio()).id;
    song.update(Clip{UUID::random(), trackID, ClipSource::audio(asset), clipStart, clipLength});
    snapshot.emplace(song, PlaybackMode::song,
                     AudioSamples{{asset, std::make_shared<AudioSample>(std::move(sample))}});
  }
  const TrackRenderSnapshot& track() const { return *snapshot->tracks()[0]; }
  static std::vector<float> mixed(const RenderTiming& timing, const TrackRenderSnapshot* track, double rate,
                                  double songLength) {
    std::vector<float> block(4);
    AudioClipRenderer::mix(block, timing, track, rate, songLength);
    return block;
  }
  std::optional<RenderSnapshot> snapshot;
};

TEST(AudioClipRendererTest, PlaysAtTheSpeedOfItsSource) {
  const struct {
    double rate, bpm, clipStart, clipLength;
    std::optional<LoopRange> loop;
    double startBeat;
    std::vector<float> block;
  } rows[] = {
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
  for (const auto& row : rows) {
    const Ramp ramp(row.rate, row.clipStart, row.clipLength);
    const RenderTiming timing{true, row.startBeat, row.bpm / 60 / 48000, PlaybackMode::song, row.loop};
    EXPECT_THAT(ramp.mixed(timing, &ramp.track(), 48000, 16), Pointwise(FloatNear(1e-3F), row.block))
        << "row " << &row - rows;
  }
}

TEST(AudioClipRendererTest, IsSilentUnlessASongPlaysAudibly) {
  const Ramp ramp(48000, 0, 4);
  TrackRenderSnapshot muted = ramp.track();
  muted.isAudible = false;
  const double step = 120.0 / 60 / 48000;
  const RenderTiming good{true, 0, step, PlaybackMode::song, {}};
  EXPECT_EQ(ramp.mixed(good, &ramp.track(), 48000, 16)[3], 3);
  EXPECT_THAT(ramp.mixed(good, &muted, 48000, 16), Each(0));
  EXPECT_THAT(ramp.mixed(good, nullptr, 48000, 16), Each(0));
  EXPECT_THAT(ramp.mixed(good, &ramp.track(), 0, 16), Each(0));
  EXPECT_THAT(ramp.mixed(good, &ramp.track(), 48000, 0), Each(0));
  for (const RenderTiming& bad : {RenderTiming{false, 0, step, PlaybackMode::song, {}},
                                  RenderTiming{true, 0, step, PlaybackMode::pattern, {}},
                                  RenderTiming{true, NAN, step, PlaybackMode::song, {}},
                                  RenderTiming{true, 0, INFINITY, PlaybackMode::song, {}}})
    EXPECT_THAT(ramp.mixed(bad, &ramp.track(), 48000, 16), Each(0))
        << bad.startBeat << " " << bad.beatsPerFrame;
}

}  // namespace
}  // namespace velmora
