#include <cmath>
#include <gtest/gtest.h>

#include "VelmoraCore/Render/BeatMath.h"
#include "VelmoraCore/Render/TransportController.h"

namespace velmora {
namespace {

constexpr double rate = 48000;

TEST(BeatMathTest, Wrap) {
  const struct {
    double beat, start, end, wrapped;
  } rows[] = {{-0.5, 0, 4, 3.5}, {4, 0, 4, 0},  {7, 2, 2, 2},      {INFINITY, 1, 4, 1}, {NAN, 1, 4, 1},
              {5, 4, 8, 5},      {9, 4, 8, 5},  {3, 4, 8, 7},      {1, 5, 3, 5},        {3, 0, 4, 3},
              {-8, 0, 4, 0},     {12, 0, 4, 0}, {1e9 + 1, 0, 4, 1}};
  for (const auto& row : rows)
    EXPECT_EQ(BeatMath::wrap(row.beat, {row.start, row.end}), row.wrapped) << row.beat;
}

TEST(BeatMathTest, FrameOffset) {
  const double bpf = BeatMath::beatsPerFrame(120, rate);
  for (int frame = 0; frame < 4096; ++frame) EXPECT_EQ(BeatMath::frameOffset(4096, frame * bpf, bpf), frame);
  EXPECT_EQ(BeatMath::frameOffset(512, 2.9999999 * bpf, bpf), 3);
  EXPECT_EQ(BeatMath::frameOffset(512, 2.9 * bpf, bpf), 2);
  EXPECT_EQ(BeatMath::frameOffset(512, 99, bpf), 511);
  EXPECT_EQ(BeatMath::frameOffset(512, -1, bpf), 0);
  EXPECT_EQ(BeatMath::frames(2, 120, rate), 48000);
  EXPECT_EQ(BeatMath::beats(48000, 120, rate), 2);
}

TEST(TransportControllerTest, PositionFollowsTheAnchor) {
  TransportController transport(TransportState{.isPlaying = true, .bpm = 120, .anchorBeat = 3});
  EXPECT_EQ(transport.playhead(), 3);
  EXPECT_EQ(transport.renderedBeat(), 3);
  EXPECT_EQ(transport.timing(1000, 512, rate).startBeat, 3);
  for (int track = 0; track < 2; ++track)  // each gets the same
    EXPECT_EQ(transport.timing(1512, 512, rate).startBeat, 3 + 512 * 120.0 / 60 / rate);
  const double rendered = transport.renderedBeat();
  EXPECT_EQ(transport.timing(10, 512, rate).startBeat, rendered) << "a clock that was reset continues";
  EXPECT_DOUBLE_EQ(transport.timing(522, 512, rate).startBeat, rendered + 512 * 120.0 / 60 / rate);
}

TEST(TransportControllerTest, TheFirstStopHoldsAndTheSecondRewinds) {
  TransportController transport;
  transport.play();
  transport.timing(0, 48000, rate);
  const double position = transport.renderedBeat();
  transport.publish(position);
  transport.stop();
  EXPECT_EQ(transport.timing(48000, 64, rate).startBeat, position);
  EXPECT_EQ(transport.playhead(), position);
  transport.togglePlay();
  EXPECT_EQ(transport.timing(99000, 64, rate).startBeat, position);
  transport.togglePlay();
  transport.stop();
  EXPECT_EQ(transport.playhead(), 0);
  EXPECT_EQ(transport.renderedBeat(), 0);
  EXPECT_FALSE(transport.state().isPlaying);
}

TEST(TransportControllerTest, TempoPivotsAndModeRewinds) {
  TransportController transport;
  for (const auto& [wanted, bpm] : {std::pair(1000, 300), {10, 40}}) {
    transport.setBPM(wanted);
    EXPECT_EQ(transport.state().bpm, bpm);
  }
  transport.play();
  transport.timing(0, 48000, rate);
  const double position = transport.renderedBeat();
  transport.setBPM(200);
  EXPECT_EQ(transport.timing(48000, 64, rate).startBeat, position);
  transport.setLoop(LoopRange{1, 2});
  EXPECT_FALSE(transport.timing(48064, 64, rate).loop) << "pattern mode has no loop";
  transport.setMode(PlaybackMode::song);
  const RenderTiming timing = transport.timing(48128, 64, rate);
  EXPECT_EQ(timing.startBeat, 0);
  EXPECT_EQ(timing.loop, (LoopRange{1, 2}));
  EXPECT_TRUE(timing.isPlaying);
  for (const PlaybackMode mode : {PlaybackMode::pattern, PlaybackMode::song}) {
    EXPECT_EQ(playbackMode(storedValue(mode)), mode);
  }
}

}  // namespace
}  // namespace velmora
