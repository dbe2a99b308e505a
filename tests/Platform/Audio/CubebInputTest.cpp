#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <numbers>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Platform/Audio/AudioFile.h"
#include "Platform/Audio/CubebInput.h"
#include "Platform/Audio/OutputDevice.h"
#include "tests/Platform/Audio/SoundServerTest.h"
#include "tests/support/FullDisk.h"
#include "tests/support/PulseServer.h"

namespace platform {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using velmora::testing::FullDisk;
using velmora::testing::PulseServer;
using velmora::testing::TemporaryFolder;

constexpr std::size_t rate = CubebInput::sampleRate;

/// From 100 to 1500 Hz four times a second: a stretch of it fits itself at no other place nearby.
std::vector<float> sweep(double seconds) {
  std::vector<float> samples(static_cast<std::size_t>(seconds * rate));
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double time = std::fmod(static_cast<double>(i) / rate, 0.25);
    const double turns = 100 * time + 2800 * time * time;
    samples[i] = static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * turns));
  }
  return samples;
}

std::vector<float> read(const std::filesystem::path& path) {
  AudioFileReader file(path);
  EXPECT_EQ(file.sampleRate(), 44100);
  EXPECT_EQ(file.channelCount(), 1);
  std::vector<float> samples(static_cast<std::size_t>(file.frameCount()));
  EXPECT_EQ(file.read(samples), samples.size());
  return samples;
}

/// The correlation of the stretch with what lies at `at`, 1 where both are equal.
double likeness(std::span<const float> stretch, std::span<const float> samples, std::size_t at) {
  double product = 0, a = 1e-12, b = 1e-12;
  for (std::size_t i = 0; i < stretch.size(); ++i) {
    const auto x = static_cast<double>(stretch[i]), y = static_cast<double>(samples[at + i]);
    product += x * y;
    a += x * x;
    b += y * y;
  }
  return product / std::sqrt(a * b);
}

/// Where in `samples`, from `from` on for `reach` places, the stretch fits best.
std::size_t bestPlace(std::span<const float> stretch, std::span<const float> samples, std::size_t from,
                      std::size_t reach) {
  std::size_t best = from;
  double most = -1;
  for (std::size_t at = from; at < std::min(from + reach, samples.size() - stretch.size()); ++at)
    if (const double found = likeness(stretch, samples, at); found > most) most = found, best = at;
  return best;
}

class CubebInputTest : public SoundServerTest {
 protected:
  /// Serves the event loop until the recording has reached this length.
  bool reaches(const CubebInput& input, double seconds) {
    return comes([&] { return input.currentTime() >= seconds; },
                 std::chrono::seconds(std::lround(seconds) + 5));
  }
  bool ends(CubebInput& input, std::chrono::milliseconds limit) {
    endings_.clear();
    input.setOnFinished([this](bool isClean) { endings_.push_back(isClean); });
    return comes([this] { return !endings_.empty(); }, limit);
  }

  TemporaryFolder folder_;
  const std::filesystem::path take_ = folder_ / "take.caf";
  std::vector<bool> endings_;
};

/// VELMORA_TAKE_SECONDS makes it longer.
TEST_F(CubebInputTest, RecordsASweepWithoutLosingAFrame) {
  const char* wanted = std::getenv("VELMORA_TAKE_SECONDS");
  const double seconds = wanted ? std::atof(wanted) : 10;
  const PulseServer server;
  const std::vector<float> played = sweep(seconds);
  AudioFileWriter file(folder_ / "sweep.wav", rate, AudioFileWriter::SampleFormat::float32);
  file.write(played, played);
  file.close();

  CubebInput input;
  input.start(take_, 600);
  const std::string player = "paplay --latency-msec=2000 " + (folder_ / "sweep.wav").string() + " &";
  ASSERT_EQ(std::system(player.c_str()), 0);
  ASSERT_TRUE(reaches(input, seconds + 2));
  input.stop();
  const std::vector<float> heard = read(take_);
  EXPECT_EQ(heard.size(), std::lround(input.currentTime() * rate));
  EXPECT_EQ(input.lostFrames(), 0);

  constexpr std::size_t length = 8192;
  const std::size_t delay = bestPlace({played.data(), length}, heard, 0, rate);
  std::size_t furthest = 0;
  double leastLike = 1;
  for (std::size_t at = 0; at + length < played.size(); at += length) {
    const std::span stretch(&played[at], length);
    const std::size_t found = bestPlace(stretch, heard, at + delay - std::min<std::size_t>(delay, 400), 800);
    furthest = std::max(furthest, std::max(found, at + delay) - std::min(found, at + delay));
    leastLike = std::min(leastLike, likeness(stretch, heard, found));
  }
  EXPECT_LE(furthest, 1U);
  EXPECT_GT(leastLike, 0.99);
  std::printf("delay %zu frames, shift %zu frames, likeness %.5f\n", delay, furthest, leastLike);
}

TEST_F(CubebInputTest, KeepsWhatWasRecordedWhenTheServerDiesOrItsDeviceGoes) {
  PulseServer server;
  CubebInput input;
  const auto cases = {+[](PulseServer& it) { it.addSink("other", 44100); },  // the new default's monitor
                      +[](PulseServer& it) { it.removeSink("other"); }, +[](PulseServer& it) { it.kill(); }};
  for (const auto& strike : cases) {
    std::filesystem::remove(take_);
    input.start(take_, 600);
    ASSERT_TRUE(reaches(input, 1.5));
    strike(server);
    ASSERT_TRUE(ends(input, 4s));
    EXPECT_EQ(endings_, std::vector{false});
    EXPECT_GE(read(take_).size(), rate * 3 / 2);
    input.stop();  // the listener's own
    EXPECT_EQ(endings_.size(), 1U);
  }
  std::filesystem::remove(take_);
  EXPECT_THROW(input.start(take_, 600), DeviceError);
  EXPECT_FALSE(std::filesystem::exists(take_));
  server.start();
  input.start(take_, 0.5);
  ASSERT_TRUE(ends(input, 4s));
  EXPECT_TRUE(endings_.back());  // its longest time
  EXPECT_EQ(read(take_).size(), rate / 2);
  EXPECT_THROW(input.start(take_, 600), FileError);  // never over another
  EXPECT_EQ(read(take_).size(), rate / 2);
}

TEST_F(CubebInputTest, IsNotHeldUpByAServerThatHangs) {
  const PulseServer server;
  auto input = std::make_optional<CubebInput>();
  input->start(take_, 600);
  ASSERT_TRUE(reaches(*input, 0.5));
  server.freeze();
  const auto start = Clock::now();
  ASSERT_TRUE(ends(*input, 4s));
  EXPECT_THROW(input->start(folder_ / "next.caf", 600), DeviceError);
  input.reset();
  EXPECT_LT(Clock::now() - start, 1s + CubebInput::patience + ControlThread::patienceAtEnd + 500ms);
  server.thaw();
  EXPECT_GE(read(take_).size(), rate / 2);
}

TEST_F(CubebInputTest, KeepsWhatAFullDiskTook) {
  const PulseServer server;
  CubebInput input;
  input.start(take_, 600);
  {
    const FullDisk disk(100002);
    EXPECT_TRUE(ends(input, 4s));
  }
  EXPECT_EQ(endings_, std::vector{false});
  EXPECT_EQ(read(take_).size(), (100002 - 68) / 4U);
}

TEST_F(CubebInputTest, TellsWhenTheEndFoundNoRoom) {
  const PulseServer server;
  CubebInput input;
  input.setOnFinished([&](bool isClean) { endings_.push_back(isClean); });
  input.start(take_, 600);
  const FullDisk disk(70);
  ASSERT_TRUE(reaches(input, 0.02));
  const bool isWhole = input.stop();
  EXPECT_TRUE(!isWhole || endings_ == std::vector{false});  // it may have ended by itself just before
  EXPECT_EQ(read(take_).size(), 0U);
}

/// The bytes as a killed process leaves them: after every `append` and before the `sync` that counts it.
TEST(CAFWriterTest, CanBeOpenedAtAnyTime) {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder / "take.caf";
  CAFWriter writer(path, 44100);
  EXPECT_TRUE(read(path).empty());
  std::vector<float> samples;
  for (const std::size_t count : {1U, 7U, 4096U}) {
    const std::vector<float> more(count, 0.25F * static_cast<float>(count % 4) - 0.125F);
    writer.append(more);
    EXPECT_EQ(read(path), samples);
    writer.sync();
    samples.insert(samples.end(), more.begin(), more.end());
    EXPECT_EQ(read(path), samples);
  }
}

TEST(LostFrameCounterTest, TellsLossFromLatenessAndDrift) {
  struct Row {
    const char* what;
    double drift;    // of the device's clock
    int jitter;      // frames by which callbacks come late, in turns
    int lateFrom;    // the callback from which on half a second's come 20 ms late
    int lostFrames;  // at callback 200
  };
  for (const Row& row : {Row{"punctual", 0, 0, 1000, 0}, Row{"jitter", 0, 400, 1000, 0},
                         Row{"slow clock", 500e-6, 400, 1000, 0}, Row{"fast clock", -500e-6, 400, 1000, 0},
                         Row{"late for a while", 0, 100, 190, 0}, Row{"a quantum", 200e-6, 400, 1000, 256},
                         Row{"a pause", 0, 100, 1000, 44100}, Row{"both", 0, 100, 190, 512}}) {
    LostFrameCounter counter;
    double due = 0;
    for (int n = 0; n < 600; ++n) {
      due += 512 + (n == 200 ? row.lostFrames : 0);
      const bool isLate = n >= row.lateFrom && n < row.lateFrom + 60;
      const double arrival = due * (1 + row.drift) + n * 37 % (row.jitter + 1) + (isLate ? 882 : 0);
      const auto time =
          LostFrameCounter::Time() + std::chrono::nanoseconds(std::llround(arrival / 44100 * 1e9));
      counter.note(time, 512, 44100);
    }
    EXPECT_NEAR(static_cast<double>(counter.count()), row.lostFrames, 45) << row.what;
  }
}

}  // namespace
}  // namespace platform
