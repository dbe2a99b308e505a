#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "Platform/Audio/FlowWatch.h"
#include "Platform/Audio/LateCallbackCounter.h"
#include "Platform/Audio/OutputFeed.h"

namespace platform {
namespace {

using namespace std::chrono_literals;

/// Plays the frame's number on the left and its negative on the right.
struct Counting : OutputSource {
  int largestBlock = 0;
  std::atomic<bool> isTakenAway{false};
  std::atomic<bool> wasCalledLater{false};

  void render(double sampleTime, int frameCount, float* left, float* right) noexcept override {
    if (isTakenAway) wasCalledLater = true;
    largestBlock = std::max(largestBlock, frameCount);
    for (int i = 0; i < frameCount; ++i) right[i] = -(left[i] = static_cast<float>(sampleTime + i));
  }
};

TEST(OutputFeedTest, CountsFramesWithoutGapsInBlocksOfAnySize) {
  OutputFeed feed;
  Counting source;
  for (int round = 0; round < 2; ++round) {  // the second starts at 0 again
    feed.play(source);
    float expected = 0;
    for (const int frameCount : {64, 1, 557, 8192, 8193, 20000, 300}) {
      std::vector<float> block(static_cast<std::size_t>(2 * frameCount));
      feed.fill(block.data(), frameCount, 48000);
      for (std::size_t i = 0; i < block.size(); i += 2, ++expected) {
        ASSERT_EQ(block[i], expected) << frameCount;
        ASSERT_EQ(block[i + 1], -expected) << frameCount;
      }
    }
  }
  EXPECT_EQ(source.largestBlock, OutputFeed::pieceFrames);
  std::vector<float> block(200, 1.0F);
  feed.silence();
  feed.fill(block.data(), 100, 48000);
  EXPECT_EQ(std::ranges::count(block, 0.0F), 200);
}

TEST(OutputFeedTest, CallsNoSourceThatWasTakenAway) {
  OutputFeed feed;
  std::atomic<bool> isEnding{false};
  std::thread audio([&] {
    std::vector<float> block(512);
    while (!isEnding) feed.fill(block.data(), 256, 48000);
  });
  for (int round = 0; round < 300; ++round) {
    Counting source;
    feed.play(source);
    const auto before = feed.callbackCount();
    while (feed.callbackCount() < before + 2) std::this_thread::yield();
    feed.silence();
    source.isTakenAway = true;
    const auto after = feed.callbackCount();
    while (feed.callbackCount() < after + 2) std::this_thread::yield();
    ASSERT_FALSE(source.wasCalledLater);
  }
  isEnding = true;
  audio.join();
}

TEST(LateCallbackCounterTest, CountsGapsOfMoreThanTwoUsualOnes) {
  for (const int frameCount : {64, 256, 1024}) {
    LateCallbackCounter counter;
    LateCallbackCounter::Time now;
    const std::chrono::duration<double> usual(frameCount / 48000.0);
    for (int i = 0; i < 400; ++i) {
      const double gaps = i < 8 ? 9 : i % 100 == 50 ? 2.2 : i % 2 == 0 ? 0.2 : 1.8;  // late four times
      now += std::chrono::duration_cast<std::chrono::nanoseconds>(gaps * usual);
      counter.note(now, frameCount, 48000);
    }
    EXPECT_EQ(counter.count(), 4U) << frameCount;
  }
}

TEST(FlowWatchTest, TellsFlowFromAFirstFillingAndFromAStall) {
  struct Row {
    const char* looks;  // one each 50 ms: c with callbacks, - without; H a program held up for 2 s, then c
    bool isFlowing, isStalled;
  };
  for (const auto& [looks, isFlowing, isStalled] : std::initializer_list<Row>{{"", false, false},
                                                                              {"cc", false, false},
                                                                              {"ccc", true, false},
                                                                              {"cc----------", false, false},
                                                                              {"ccc----", true, false},
                                                                              {"ccc-----", false, true},
                                                                              {"ccc-----c", false, false},
                                                                              {"ccc-----ccc", true, false},
                                                                              {"c--c", true, false},
                                                                              {"cccH", true, false}}) {
    FlowWatch watch;
    std::uint64_t callbacks = 7;
    watch.restart(callbacks);
    for (const char look : std::string(looks))
      watch.look(callbacks += look != '-', look == 'H' ? 2000ms : 50ms);
    EXPECT_EQ(watch.isFlowing(), isFlowing) << looks;
    EXPECT_EQ(watch.isStalled(), isStalled) << looks;
  }
}

}  // namespace
}  // namespace platform
