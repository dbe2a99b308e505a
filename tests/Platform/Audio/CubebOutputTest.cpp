#include <atomic>
#include <cmath>
#include <numbers>
#include <optional>
#include <vector>

#include "Platform/Audio/CubebOutput.h"
#include "tests/Platform/Audio/SoundServerTest.h"
#include "tests/support/EventLoopTest.h"
#include "tests/support/PulseServer.h"

// The server's client library forgets a few bytes whenever a stream is closed.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:pa_xmalloc\n"; }

// Its locks are invisible to the thread sanitizer, and so the order that they make.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() { return "race:libpulse\n"; }

namespace platform {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using velmora::testing::PulseServer;

/// 1000 Hz at 48000 Hz, 0.5 on the left and 0.25 on the right.
struct Sine : OutputSource {
  std::atomic<int> calls{0};
  std::atomic<bool> hasGaps{false};
  double nextTime = 0;

  void render(double sampleTime, int frameCount, float* left, float* right) noexcept override {
    if (sampleTime != 0 && sampleTime != nextTime) hasGaps = true;
    nextTime = sampleTime + frameCount;
    for (int i = 0; i < frameCount; ++i) {
      left[i] = static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * (sampleTime + i) / 48));
      right[i] = left[i] / 2;
    }
    ++calls;
  }
};

class CubebOutputTest : public SoundServerTest {
 protected:
  /// Does what the engine does at each change, and counts them.
  void listen(CubebOutput& output) {
    output.setOnChange([&] {
      ++changes_;
      rate_ = output.sampleRate();
      try {
        output.start(sine_);
      } catch (const DeviceError& error) {
        error_ = error.what();
      }
    });
  }
  bool sounds(std::chrono::milliseconds limit = 4s) {
    return comes([this, before = sine_.calls.load()] { return sine_.calls >= before + 20; }, limit);
  }
  bool changes(int count, std::chrono::milliseconds limit) {
    return comes([this, count] { return changes_ >= count; }, limit) && changes_ == count;
  }

  Sine sine_;
  int changes_ = 0;
  double rate_ = -1;
  std::string error_;
};

/// The longest stretch, in frames, in which three neighbours always fit a sine of 1000 Hz, the right side is
/// half of the left and the level is 0.5 within 1 %.
std::size_t longestSine(const std::vector<float>& samples) {
  const float twiceCosine = 2 * std::cos(2 * std::numbers::pi_v<float> / 48);
  std::size_t longest = 0, start = 0;
  float peak = 0;
  for (std::size_t i = 2; i < samples.size() / 2; ++i) {
    const float* const frame = &samples[2 * i];
    const float misfit = frame[-4] + frame[0] - twiceCosine * frame[-2];
    peak = std::max(peak, std::abs(frame[0]));
    if (std::abs(misfit) > 1e-4F || std::abs(frame[1] - frame[0] / 2) > 1e-4F) start = i, peak = 0;
    if (std::abs(peak - 0.5F) < 0.005F) longest = std::max(longest, i - start);
  }
  return longest;
}

TEST_F(CubebOutputTest, PlaysASineWithoutGapsUntilItIsStopped) {
  const PulseServer server;
  CubebOutput output;
  listen(output);
  EXPECT_EQ(output.sampleRate(), 48000);
  output.start(sine_);
  ASSERT_TRUE(sounds());
  std::size_t longest = 0;
  for (int take = 0; take < 5 && longest < 24000; ++take) longest = longestSine(server.record(1));
  EXPECT_GE(longest, 24000U);
  output.stop();
  const int calls = sine_.calls;
  EXPECT_EQ(longestSine(server.record(0.2)), 0U);
  EXPECT_EQ(sine_.calls, calls);
  output.start(sine_);
  EXPECT_TRUE(sounds());
  EXPECT_FALSE(sine_.hasGaps);
  EXPECT_EQ(changes_, 0);
}

TEST_F(CubebOutputTest, ComesBackTwoSecondsAfterTheServer) {
  PulseServer server(PulseServer::Sound::off);
  CubebOutput output;
  listen(output);
  EXPECT_EQ(output.sampleRate(), 0);
  EXPECT_THROW(output.start(sine_), DeviceError);
  for (int round = 0; round < 2; ++round) {  // without a server at first, then without it once more
    EXPECT_FALSE(comes([] { return false; }, 1200ms));
    EXPECT_EQ(sine_.calls, 0);
    server.start();
    const auto back = Clock::now();
    EXPECT_TRUE(changes(1, 2s));
    EXPECT_TRUE(sounds());
    EXPECT_LT(Clock::now() - back, 2s);
    EXPECT_EQ(changes_, 1);
    server.kill();
    ASSERT_TRUE(changes(2, 2s));
    EXPECT_EQ(rate_, 0);
    EXPECT_EQ(error_, "No sound output was found.");
    sine_.calls = changes_ = 0;
  }
}

TEST_F(CubebOutputTest, NoticesThatTheSinkIsSuspendedAndResumed) {
  const PulseServer server;
  CubebOutput output;
  listen(output);
  output.start(sine_);
  ASSERT_TRUE(sounds());
  server.suspendSink();
  ASSERT_TRUE(changes(1, 4s));
  EXPECT_EQ(rate_, 0);
  EXPECT_FALSE(sounds(500ms));
  server.resumeSink();
  EXPECT_TRUE(changes(2, 2s));
  EXPECT_TRUE(sounds());
  EXPECT_EQ(changes_, 2);
}

TEST_F(CubebOutputTest, FollowsTheDefaultDeviceAndItsRate) {
  const PulseServer server;
  CubebOutput output;
  listen(output);
  output.start(sine_);
  ASSERT_TRUE(sounds());
  server.addSink("other", 44100);
  ASSERT_TRUE(changes(1, 3s));
  EXPECT_EQ(rate_, 44100);
  EXPECT_TRUE(sounds());
  server.removeSink("other");
  ASSERT_TRUE(changes(2, 3s));
  EXPECT_EQ(rate_, 48000);
  EXPECT_TRUE(sounds());
  server.removeSink("studio");
  ASSERT_TRUE(changes(3, 2s));
  EXPECT_EQ(rate_, 0);
  server.addStudio();
  ASSERT_TRUE(changes(4, 2s));
  EXPECT_EQ(rate_, 48000);
  EXPECT_TRUE(sounds());
}

TEST_F(CubebOutputTest, IsNotHeldUpByAServerThatHangs) {
  PulseServer server;
  auto output = std::make_optional<CubebOutput>();
  listen(*output);
  output->start(sine_);
  ASSERT_TRUE(sounds());
  server.freeze();
  ASSERT_TRUE(changes(1, 4s));
  server.thaw();
  ASSERT_TRUE(changes(2, 2s));
  server.freeze();
  const auto start = Clock::now();
  output->stop();
  EXPECT_LT(Clock::now() - start, 500ms);
  try {
    output->start(sine_);
    ADD_FAILURE() << "nothing thrown";
  } catch (const DeviceError& error) {
    EXPECT_STREQ(error.what(), "The sound server does not answer.");
  }
  output.reset();
  EXPECT_LT(Clock::now() - start, CubebOutput::patience + ControlThread::patienceAtEnd + 500ms);
}

}  // namespace
}  // namespace platform
