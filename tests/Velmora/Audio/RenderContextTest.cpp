#include <gtest/gtest.h>
#include <mutex>

#include "Velmora/Audio/OfflineRender.h"
#include "Velmora/Audio/RenderContext.h"
#include "Velmora/Audio/SilentInstrument.h"
#include "VelmoraCore/Instruments/PolySynth.h"
#include "tests/support/Songs.h"
#include "tests/support/realtime/RealtimeGuard.h"

namespace velmora {
namespace {

using testing::RealtimeGuard;

/// A track with all that plays it at 48000 Hz, and the locks that this may take.
struct Bench {
  Bench(const Track& track, TransportController& transport, SnapshotStore& store)
      : shortLocks{RealtimeGuard::rangeOf(transport), RealtimeGuard::rangeOf(store)} {
    auto renderer = std::make_unique<TrackRenderer>(track.id, instrumentOf(track));
    auto audition = std::make_unique<LiveNoteRenderer>(instrumentOf(track));
    renderer->prepare(48000, RenderContext::maxFrames);
    audition->prepare(48000, RenderContext::maxFrames);
    context.emplace(std::move(renderer), std::move(audition), transport, store, 48000);
  }
  std::unique_ptr<Instrument> instrumentOf(const Track& track) {
    auto instrument = makeInstrument(track.kind);
    if (const auto* synth = dynamic_cast<const PolySynth*>(instrument.get()))
      shortLocks.push_back(RealtimeGuard::rangeOf(*synth));
    return instrument;
  }
  std::vector<RealtimeGuard::Range> shortLocks;
  std::optional<RenderContext> context;
};

/// The demo's drum track, played by hand.
class RenderContextTest : public ::testing::Test {
 protected:
  RenderContextTest() { play(PlaybackMode::pattern); }
  void play(PlaybackMode mode) {
    store_.publish(std::make_shared<RenderSnapshot>(song_, mode, AudioSamples{}));
    transport_.setMode(mode);
    transport_.play();
  }
  void render(int frameCount, std::size_t bufferSize) {
    context_.render(0, frameCount, std::span(block_).first(bufferSize));
  }

  Song song_ = Song::demo();
  TransportController transport_;
  SnapshotStore store_;
  Bench bench_{song_.tracks[0], transport_, store_};
  RenderContext& context_ = *bench_.context;
  std::vector<float> block_ = std::vector<float>(8192, 7);
};

TEST_F(RenderContextTest, BlocksOutOfBoundsDoNotMoveOn) {
  render(0, 512);
  render(513, 512);
  EXPECT_EQ(block_[0], 7);
  render(4097, 8192);
  EXPECT_TRUE(block_[0] == 0 && block_[4096] == 0 && block_[4097] == 7);
  EXPECT_EQ(transport_.renderedBeat(), 0);
  render(4096, 8192);
  EXPECT_GT(transport_.renderedBeat(), 0);
  EXPECT_GT(context_.peakMeter().load(), 0.3F);
}

TEST_F(RenderContextTest, PublishesTheWrappedPlayheadOnlyWhenAsked) {
  const auto playheadFrom = [&](double beat) {
    transport_.seek(beat);
    render(2250, 4096);  // a tenth of a beat at 128 bpm
    return transport_.playhead();
  };
  EXPECT_EQ(playheadFrom(7), 7);
  context_.setPublishesPlayhead(true);
  EXPECT_NEAR(playheadFrom(7), 3.1, 1e-9);
  play(PlaybackMode::song);
  EXPECT_NEAR(playheadFrom(17), 1.1, 1e-9);
  transport_.setLoop(LoopRange{4, 6});
  EXPECT_NEAR(playheadFrom(17), 5.1, 1e-9);
}

TEST(RealtimeTest, TheCallbackNeitherAllocatesNorLocksButShortly) {
  if (!RealtimeGuard::isEffective()) GTEST_SKIP() << "sanitizers bring interceptors of their own";
  {
    const RealtimeGuard guard;
    auto memory = std::make_unique<std::vector<int>>(10);
    std::mutex mutex;
    mutex.lock();
    mutex.unlock();
    memory.reset();
    EXPECT_EQ(guard.faults(), "malloc 2, free 2, lock 1") << "the guard sees what it should";
  }
  Song song = Song::demo();
  for (const SynthPreset preset : allSynthPresets()) {
    song.addTrack(TrackKind::synth(preset));
    Pattern& pattern = song.patterns.write().back();
    for (int n = 0; n < 40; ++n) pattern.insertNote(30 + n, 100, n * 0.1, 1, 0.01);
    song.placePattern(pattern.id, 0);
  }
  TransportController transport;
  transport.setMode(PlaybackMode::song);
  transport.play();
  SnapshotStore store(std::make_shared<RenderSnapshot>(song, PlaybackMode::song, AudioSamples{}));
  for (const Track& track : song.tracks) {
    Bench bench(track, transport, store);
    bench.context->audition().setKey(38, true);
    TrackEffects effects(48000);
    effects.apply({3, -2, 2, 0.3F, 0.3F});
    platform::AudioGraph graph(48000);
    graph.setStrips({effects.strip(*bench.context)});
    std::vector<float> left(5000), right(5000);

    const RealtimeGuard guard(bench.shortLocks);
    for (int block = 0; block < 60; ++block) {
      if (block == 30) transport.seek(1);
      graph.render(block * 5000.0, 5000, left.data(), right.data());
    }
    EXPECT_EQ(guard.faults(), "") << track.name;
  }
}

}  // namespace
}  // namespace velmora
