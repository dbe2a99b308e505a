#include <QDataStream>
#include <QIODevice>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <numbers>

#include "Platform/Audio/AudioPlayer.h"
#include "Platform/Audio/CubebOutput.h"
#include "Platform/Files/FileError.h"
#include "tests/Platform/Audio/Signals.h"
#include "tests/Platform/Audio/SoundServerTest.h"
#include "tests/support/HandDrivenOutput.h"
#include "tests/support/PulseServer.h"
#include "tests/support/realtime/RealtimeGuard.h"

namespace platform {
namespace {

using velmora::testing::HandDrivenOutput;

double sine(double cycles) { return std::sin(2 * std::numbers::pi * cycles); }

/// A WAV file with a tone of 0.5, of 0.25 on a second channel.
QByteArray tone(double hertz, int rate, int channels, double seconds) {
  const int frames = static_cast<int>(seconds * rate), size = 2 * channels * frames;
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out.setByteOrder(QDataStream::LittleEndian);
  out.writeRawData("RIFF", 4);
  out << quint32(36 + size);
  out.writeRawData("WAVEfmt ", 8);
  out << quint32(16) << quint16(1) << quint16(channels) << quint32(rate) << quint32(2 * channels * rate)
      << quint16(2 * channels) << quint16(16);
  out.writeRawData("data", 4);
  out << quint32(size);
  for (int i = 0; i < frames; ++i)
    for (int channel = 0; channel < channels; ++channel)
      out << qint16(std::lround((channel == 1 ? 8192 : 16384) * sine(hertz * i / rate)));
  return bytes;
}

struct Bench {
  Bench(const QByteArray& bytes, double rate) {
    auto owned = std::make_unique<HandDrivenOutput>(rate);
    output = owned.get();
    player = AudioPlayer::fromBytes(bytes, std::move(owned));
  }
  HandDrivenOutput::Block pull(int frames) const {
    HandDrivenOutput::Block all;
    for (int size = 1; frames > 0; frames -= size, size = std::min(frames, size * 3 % 1021 + 1))
      all += output->pull(size);
    return all;
  }
  HandDrivenOutput* output = nullptr;
  std::unique_ptr<AudioPlayer> player;
};

TEST(AudioPlayerTest, KeepsPitchPhaseAndLevelAtEveryRate) {
  const int rows[][3] = {
      {48000, 48000, 2}, {44100, 48000, 2}, {48000, 44100, 3}, {96000, 48000, 1}, {192000, 8000, 2}};
  for (const auto& [from, to, channels] : rows) {
    const Bench bench(tone(1000, from, channels, 0.5), to);
    EXPECT_DOUBLE_EQ(bench.player->duration(), 0.5);
    ASSERT_TRUE(bench.player->prepare() && bench.player->play());
    const auto block = bench.pull(to);
    const auto edge = static_cast<std::size_t>(to) / 100;  // 10 ms, in which the sound begins and ends
    double worst = 0;
    for (std::size_t i = edge; i < block.left.size(); ++i) {
      if (i >= 49 * edge && i < 51 * edge) continue;
      const double ideal = i < 50 * edge ? 0.5 * sine(1000.0 * static_cast<double>(i) / to) : 0;
      const double left = block.left[i], right = block.right[i];
      worst = std::max({worst, std::abs(left - ideal), std::abs(right - (channels == 1 ? 1 : 0.5) * ideal)});
    }
    EXPECT_LT(worst, 1e-4) << from << " Hz at " << to;
  }
  const Bench bench(tone(20000, 48000, 1, 0.5), 32000);  // can't be heard there, and mustn't be another tone
  ASSERT_TRUE(bench.player->play());
  const auto block = bench.pull(15000);
  for (std::size_t n = 1000; n < 15000; ++n) ASSERT_NEAR(block.left[n], 0, 1e-4);
}

TEST(AudioPlayerTest, GoesOnWhereItWasWhenTheDeviceComesBackAndIsSilentOnceStopped) {
  const Bench bench(tone(1000, 48000, 2, 1), 44100);
  ASSERT_TRUE(bench.player->play());
  bench.pull(14700);  // 16000 frames of the sound
  bench.output->lose();
  bench.output->comeBack(48000);
  const auto block = bench.pull(1000);
  for (std::size_t n = 0; n < 1000; ++n)
    ASSERT_NEAR(block.left[n], 0.5 * sine(static_cast<double>(16000 + n) / 48), 1e-4) << n;
  bench.player->stop();
  EXPECT_EQ(bench.pull(100).peak(), 0);
  ASSERT_TRUE(bench.player->play());  // from the beginning
  EXPECT_NEAR(bench.pull(13).left[12], 0.5, 1e-3);
  bench.output->remove();
  EXPECT_FALSE(bench.player->prepare() || bench.player->play() || bench.output->isPlaying());
}

/// Hands out what it is given to play.
struct BareOutput final : OutputDevice {
  explicit BareOutput(OutputSource*& itsSource) : source(itsSource) {}
  double sampleRate() override { return 44100; }
  void start(OutputSource& itsSource) override { source = &itsSource; }
  void stop() noexcept override {}
  OutputSource*& source;
};

TEST(AudioPlayerTest, RendersWithoutAllocatingOrLocking) {
  using velmora::testing::RealtimeGuard;
  if (!RealtimeGuard::isEffective()) GTEST_SKIP() << "sanitizers bring interceptors of their own";
  OutputSource* source = nullptr;
  const auto player = AudioPlayer::fromBytes(tone(1000, 48000, 2, 0.1), std::make_unique<BareOutput>(source));
  ASSERT_TRUE(player->play() && source);
  std::vector<float> left(4096), right(4096);
  const RealtimeGuard guard;
  for (int block = 0; block < 3; ++block) source->render(4096.0 * block, 4096, left.data(), right.data());
  EXPECT_EQ(guard.faults(), "");
}

TEST(AudioPlayerTest, RefusesWhatIsNoSoundAndBoundsWhatIs) {
  EXPECT_EQ(AudioPlayer::fromBytes(tone(1, 8000, 1, 601), nullptr)->duration(), 600);
  EXPECT_FALSE(AudioPlayer::fromBytes(tone(1, 8000, 1, 1), nullptr)->prepare());
  const QByteArray others[] = {"", "<html>", tone(1, 8000, 1, 0), tone(1, 7999, 1, 1), tone(1, 192001, 1, 1)};
  for (const QByteArray& bytes : others) EXPECT_THROW(AudioPlayer::fromBytes(bytes, nullptr), FileError);
}

using AudioPlayerOnAServerTest = SoundServerTest;

TEST_F(AudioPlayerOnAServerTest, IsHeard) {
  const velmora::testing::PulseServer server;
  const auto player = AudioPlayer::fromBytes(tone(1000, 44100, 2, 20), std::make_unique<CubebOutput>());
  ASSERT_TRUE(player->prepare() && player->play());
  double level = -100;
  for (int take = 0; take < 5 && std::abs(level) > 0.1; ++take) {
    const std::vector<float> heard = server.record(1);
    signals::Samples left;
    for (std::size_t i = 0; i + 1 < heard.size() && left.size() < 24000; i += 2) left.push_back(heard[i]);
    level = signals::gainDB(left, 1000, 48000) - 20 * std::log10(0.5 * 24000 / 2);
  }
  EXPECT_NEAR(level, 0, 0.1);
}

}  // namespace
}  // namespace platform
