#include <atomic>
#include <gtest/gtest.h>
#include <random>
#include <thread>

#include "Velmora/Audio/AudioEngine.h"
#include "Velmora/Audio/OfflineRender.h"
#include "VelmoraCore/Render/SnapshotCompiler.h"
#include "tests/support/HandDrivenOutput.h"

namespace velmora {
namespace {

using testing::HandDrivenOutput;
using Block = HandDrivenOutput::Block;

class AudioEngineTest : public ::testing::Test {
 protected:
  explicit AudioEngineTest(double rate = 48000) : output_(new HandDrivenOutput(rate)) {
    engine_.setOnError([this](const std::string& text) { errors_.push_back(text); });
    engine_.setOnRecovery([this] { ++recoveries_; });
  }

  void open(const Song& song) {
    engine_.attach(transport_, store_);
    transport_.setMode(PlaybackMode::song);
    transport_.setBPM(song.bpm);
    show(song);
    engine_.sync(song);
    engine_.start();
  }
  void show(const Song& song) {
    store_.publish(compiler_.compile(song, PlaybackMode::song, {}));
    engine_.applyMix(song);
  }
  Block pull(int blocks, int frames = 512) {
    Block all;
    while (blocks-- > 0) all += output_->pull(frames);
    return all;
  }

  TransportController transport_;
  SnapshotStore store_;
  SnapshotCompiler compiler_;
  HandDrivenOutput* output_;
  AudioEngine engine_{std::unique_ptr<platform::OutputDevice>(output_)};
  std::vector<std::string> errors_;
  int recoveries_ = 0;
};

class OfflineRateTest : public AudioEngineTest {
 protected:
  OfflineRateTest() : AudioEngineTest(OfflineRender::sampleRate) {}
};

TEST_F(OfflineRateTest, PlaysWhatTheExportWrites) {
  Song song = Song::demo();
  song.tracks.write()[1].pan = -0.4F;
  open(song);
  transport_.play();
  Block exported;
  OfflineRender({song, {}, 6.0}).run([&](auto left, auto right) {
    exported += Block{{left.begin(), left.end()}, {right.begin(), right.end()}};
  });
  Block live = pull(65, 4096);
  live.left.resize(exported.left.size());
  live.right.resize(exported.right.size());
  EXPECT_GT(exported.peak(), 0.1F);
  EXPECT_TRUE(live == exported);
}

TEST_F(AudioEngineTest, FollowsTheTracksOfTheSong) {
  Song song = Song::demo();
  engine_.sync(song);  // before attach: taken note of
  EXPECT_EQ(engine_.meter(song.tracks[0].id), nullptr);
  open(song);
  transport_.play();
  const UUID drums = song.tracks[0].id, chords = song.tracks[1].id;
  const PeakMeter* const drumMeter = engine_.meter(drums);
  const PeakMeter* const chordMeter = engine_.meter(chords);
  ASSERT_TRUE(drumMeter && chordMeter);
  pull(10);
  EXPECT_GT(drumMeter->load(), 0);
  EXPECT_GT(engine_.masterMeter().load(), 0);

  song.tracks.write()[1].volume = 0.1F;
  song.tracks.write()[0].isMuted = true;
  show(song);
  engine_.setAuditionKey(38, true, drums);
  pull(10);
  EXPECT_EQ(engine_.meter(chords), chordMeter);  // a mix edit keeps the node
  EXPECT_EQ(drumMeter->load(), 0);

  song.tracks.write()[1].kind = TrackKind::synth(SynthPreset::bass);
  show(song);
  engine_.sync(song);
  EXPECT_NE(engine_.meter(chords), chordMeter);

  const double before = transport_.playhead();
  song.removeTrack(drums);  // it wrote the playhead
  show(song);
  engine_.sync(song);
  pull(10);
  EXPECT_EQ(engine_.meter(drums), nullptr);
  EXPECT_GT(transport_.playhead(), before);

  song.removeTrack(chords);
  show(song);
  engine_.sync(song);
  EXPECT_EQ(pull(4).peak(), 0);
}

TEST_F(AudioEngineTest, PlaysKeysByHandWhileTheTransportStands) {
  const Song song = Song::demo();
  open(song);
  engine_.setAuditionKey(60, true, UUID::random());
  EXPECT_EQ(pull(4).peak(), 0);
  engine_.setAuditionKey(60, true, song.tracks[1].id);
  EXPECT_GT(pull(20).peak(), 0.01F);
  engine_.releaseAuditionKeys();
  pull(400);
  EXPECT_LT(pull(20).peak(), 1e-4F);
}

TEST_F(AudioEngineTest, GoesOnFromTheSameBeatAtTheNextDevicesRate) {
  const Song song = Song::demo();
  open(song);
  transport_.play();
  pull(100);
  const double lost = transport_.renderedBeat();

  output_->lose();
  EXPECT_FALSE(engine_.isRunning());
  EXPECT_EQ(errors_, std::vector<std::string>{"Audio engine could not restart: No sound output was found."});
  EXPECT_EQ(engine_.masterMeter().load(), 0);

  output_->comeBack(96000);
  EXPECT_TRUE(engine_.isRunning());
  EXPECT_EQ(engine_.outputSampleRate(), 96000);
  EXPECT_EQ(recoveries_, 1);
  EXPECT_GT(pull(100).peak(), 0.01F);
  EXPECT_NEAR(transport_.renderedBeat(), lost + 100 * 512 / 96000.0 * song.bpm / 60, 1e-6);

  output_->comeBack(44100);  // from one device to the next: neither an error nor a recovery
  EXPECT_TRUE(engine_.isRunning());
  EXPECT_EQ(errors_.size(), 1U);
  EXPECT_EQ(recoveries_, 1);

  engine_.stop();
  output_->comeBack(48000);
  EXPECT_FALSE(output_->isPlaying());
}

TEST_F(AudioEngineTest, LeavesTracksOutAtAnImpossibleRate) {
  const Song song = Song::demo();
  open(song);
  output_->comeBack(1000.5);
  EXPECT_EQ(engine_.warnings(), std::vector<std::string>(2, "Unsupported output sample rate 1000.5"));
  EXPECT_EQ(engine_.meter(song.tracks[0].id), nullptr);
  output_->comeBack(48000);
  EXPECT_NE(engine_.meter(song.tracks[0].id), nullptr);
}

/// Every structural and mix edit against a device thread that never stops pulling.
TEST_F(AudioEngineTest, IsEditedWhileTheDevicePulls) {
  Song song = Song::demo();
  open(song);
  transport_.play();
  std::atomic<bool> isOver{false};
  std::thread device([&] {
    while (!isOver) output_->pull(257);
  });
  std::mt19937 random(7);
  for (int n = 0; n < 150; ++n) {
    const std::size_t count = song.tracks.size();
    if (count < 4) song.addTrack(n % 2 ? TrackKind::drums() : TrackKind::synth(SynthPreset::pad));
    if (count > 2) song.removeTrack(song.tracks[random() % count].id);
    song.tracks.write()[0].fx.delayMix = static_cast<float>(n % 10) / 10;
    song.tracks.write()[0].isMuted = n % 7 == 0;
    show(song);
    engine_.sync(song);
    engine_.setAuditionKey(60 + n % 5, n % 2 == 0, song.tracks[0].id);
    transport_.setLoop(LoopRange{0, 1.0 + n % 8});
    transport_.seek(n % 16);
    if (n % 15 == 0) transport_.togglePlay();
    EXPECT_GE(transport_.playhead(), 0);
    if (n % 50 == 49) output_->comeBack(n % 100 == 99 ? 44100 : 48000);
    EXPECT_GE(engine_.masterMeter().load(), 0);
  }
  isOver = true;
  device.join();
  EXPECT_TRUE(engine_.isRunning());
}

}  // namespace
}  // namespace velmora
