#include <atomic>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>

#include "Velmora/Audio/OfflineRender.h"
#include "Velmora/Audio/RenderContext.h"
#include "Velmora/Audio/SilentInstrument.h"
#include "VelmoraCore/Instruments/PolySynth.h"
#include "tests/support/Songs.h"
#include "tests/support/realtime/RealtimeGuard.h"

namespace velmora {
namespace {

using testing::RealtimeGuard;

/// The demo's drum track, played by hand.
struct Track1 {
  Song song = Song::demo();
  TransportController transport;
  SnapshotStore store;
  std::unique_ptr<RenderContext> context;
  std::vector<float> block = std::vector<float>(8192, 7);

  Track1() {
    const Track& track = song.tracks[0];
    auto renderer = std::make_unique<TrackRenderer>(track.id, makeInstrument(track.kind));
    auto audition = std::make_unique<LiveNoteRenderer>(makeInstrument(track.kind));
    renderer->prepare(48000, RenderContext::maxFrames);
    audition->prepare(48000, RenderContext::maxFrames);
    context =
        std::make_unique<RenderContext>(std::move(renderer), std::move(audition), transport, store, 48000);
    publish(PlaybackMode::pattern);
    transport.play();
  }
  void publish(PlaybackMode mode) {
    store.publish(std::make_shared<RenderSnapshot>(song, mode, AudioSamples{}));
  }
  void render(int frameCount, std::size_t bufferSize) {
    context->render(0, frameCount, std::span(block).first(bufferSize));
  }
};

TEST(RenderContextTest, BlocksOutOfBoundsDoNotMoveOn) {
  Track1 track;
  track.render(0, 512);
  track.render(513, 512);
  EXPECT_EQ(track.block[0], 7);
  track.render(4097, 8192);
  EXPECT_EQ(track.block[0], 0);
  EXPECT_EQ(track.block[4096], 0);
  EXPECT_EQ(track.block[4097], 7);
  EXPECT_EQ(track.transport.renderedBeat(), 0);
  track.render(4096, 8192);
  EXPECT_GT(track.transport.renderedBeat(), 0);
  EXPECT_GT(track.context->peakMeter().load(), 0.3F);
}

TEST(RenderContextTest, PublishesTheWrappedPlayheadOnlyWhenAsked) {
  Track1 track;
  track.transport.seek(7);
  track.render(24000 / 8, 4096);
  EXPECT_EQ(track.transport.playhead(), 7);
  track.context->setPublishesPlayhead(true);
  track.render(2250, 4096);  // a tenth of a beat at 128 bpm
  EXPECT_NEAR(track.transport.playhead(), 3.1, 1e-9);
  track.transport.setMode(PlaybackMode::song);
  track.publish(PlaybackMode::song);
  track.transport.seek(17);
  track.render(2250, 4096);
  EXPECT_NEAR(track.transport.playhead(), 1.1, 1e-9);
  track.transport.setLoop(LoopRange{4, 6});
  track.render(2250, 4096);
  EXPECT_NEAR(track.transport.playhead(), 5.1, 1e-9);
}

TEST(RenderContextTest, AMutedTrackMetersNothing) {
  Track1 track;
  Track muted = track.song.tracks[0];
  muted.isMuted = true;
  track.song.update(muted);
  track.publish(PlaybackMode::pattern);
  track.context->audition().setKey(38, true);
  track.render(512, 512);
  EXPECT_EQ(track.context->peakMeter().load(), 0);
  EXPECT_EQ(track.block[100], 0);
}

TEST(RenderContextTest, EditsWhileADevicePulls) {
  Track1 track;
  track.context->setPublishesPlayhead(true);
  std::atomic<bool> isDone{false};
  std::thread device([&] {
    for (double sampleTime = 0; !isDone; sampleTime += 512)
      track.context->render(sampleTime, 512, track.block);
  });
  for (int edit = 0; edit < 300; ++edit) {
    Track changed = track.song.tracks[0];
    changed.volume = static_cast<float>(edit) / 300;
    track.song.update(changed);
    track.publish(edit % 50 < 40 ? PlaybackMode::pattern : PlaybackMode::song);
    track.context->audition().setKey(36 + edit % 12, edit % 3 != 0);
    track.transport.setLoop(LoopRange{0, 1.0 + edit % 8});
    if (edit % 20 == 0) track.transport.seek(edit % 7);
    if (edit % 30 == 0) track.transport.togglePlay();
    EXPECT_GE(track.transport.playhead(), 0);
    EXPECT_LE(track.context->peakMeter().load(), 20);
    std::this_thread::yield();
  }
  isDone = true;
  device.join();
}

TEST(RenderContextTest, TheCallbackNeitherAllocatesNorLocksButShortly) {
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
    const Track track = song.addTrack(TrackKind::synth(preset));
    Pattern pattern = song.patternsForTrack(track.id)[0];
    for (int n = 0; n < 40; ++n) pattern.insertNote(30 + n, 100, n * 0.1, 1, 0.01);
    song.update(pattern);
    song.placePattern(pattern.id, 0);
  }
  TransportController transport;
  transport.setMode(PlaybackMode::song);
  transport.play();
  SnapshotStore store(std::make_shared<RenderSnapshot>(song, PlaybackMode::song, AudioSamples{}));
  for (const Track& track : song.tracks) {
    auto instrument = makeInstrument(track.kind);
    auto audition = makeInstrument(track.kind);
    std::vector<RealtimeGuard::Range> shortLocks = {RealtimeGuard::rangeOf(transport),
                                                    RealtimeGuard::rangeOf(store)};
    for (const Instrument* i : {instrument.get(), audition.get()}) {
      if (const auto* synth = dynamic_cast<const PolySynth*>(i))
        shortLocks.push_back(RealtimeGuard::rangeOf(*synth));
    }
    auto renderer = std::make_unique<TrackRenderer>(track.id, std::move(instrument));
    auto live = std::make_unique<LiveNoteRenderer>(std::move(audition));
    renderer->prepare(48000, 4096);
    live->prepare(48000, 4096);
    live->setKey(38, true);
    RenderContext context(std::move(renderer), std::move(live), transport, store, 48000);
    TrackEffects effects(48000);
    effects.apply({3, -2, 2, 0.3F, 0.3F});
    platform::AudioGraph graph(48000);
    graph.setStrips({effects.strip(context)});
    std::vector<float> left(5000), right(5000);

    const RealtimeGuard guard(std::move(shortLocks));
    for (int block = 0; block < 60; ++block) {
      if (block == 30) transport.seek(1);
      graph.render(block * 5000.0, 5000, left.data(), right.data());
    }
    EXPECT_EQ(guard.faults(), "") << track.name;
  }
}

}  // namespace
}  // namespace velmora
