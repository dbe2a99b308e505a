#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <thread>

#include "Platform/Audio/AudioGraph.h"
#include "Platform/Audio/FlushDenormals.h"
#include "tests/Platform/Audio/Signals.h"

namespace platform {
namespace {

using signals::noise;
using signals::Samples;
using testing::ElementsAre;
using testing::Pair;

/// Plays samples by sample time, then silence; remembers its pulls.
struct Player : SourceNode {
  explicit Player(Samples sound) : samples(std::move(sound)) {}
  void render(double sampleTime, int frameCount, std::span<float> buffer) noexcept override {
    for (std::size_t n = 0, at = static_cast<std::size_t>(sampleTime); n < buffer.size(); ++n, ++at) {
      buffer[n] = at < samples.size() ? samples[at] : 0;
    }
    pulls.emplace_back(sampleTime, frameCount);
  }
  Samples samples;
  std::vector<std::pair<double, int>> pulls;
};

struct Track {
  explicit Track(Samples sound) : player(std::move(sound)) { player.pulls.reserve(1 << 16); }
  Strip strip() { return {&player, &equalizer, &delay, &reverb, &channel}; }
  void turnAllUp() {
    equalizer.setGainDB(Equalizer::Band::low, 6);
    equalizer.setGainDB(Equalizer::Band::high, -9);
    delay.setWetDryMix(40);
    reverb.setWetDryMix(30);
    channel.setOutputVolume(0.8F);
    channel.setPan(-0.3F);
  }
  Player player;
  Equalizer equalizer;
  Delay delay;
  Reverb reverb;
  MixerNode channel;
};

struct Stereo {
  Samples left, right;
  bool operator==(const Stereo& other) const {  // bit for bit
    return std::memcmp(left.data(), other.left.data(), left.size() * sizeof(float)) == 0 &&
           std::memcmp(right.data(), other.right.data(), right.size() * sizeof(float)) == 0;
  }
};

/// Pulls blocks whose sizes `blockFrames()` tells.
Stereo pull(
    AudioGraph& graph, int frameCount, const std::function<int()>& blockFrames = [] { return 512; }) {
  Stereo out{Samples(static_cast<std::size_t>(frameCount)), Samples(static_cast<std::size_t>(frameCount))};
  for (int start = 0, count = 0; start < frameCount; start += count) {
    count = std::min(blockFrames(), frameCount - start);
    graph.render(start, count, out.left.data() + start, out.right.data() + start);
  }
  return out;
}

TEST(AudioGraph, passesAFlatStripBitForBitInPiecesOfALargePull) {
  Track track(noise(9000));
  AudioGraph graph(48000);
  graph.setStrips({track.strip()});
  EXPECT_EQ(pull(graph, 9000, [] { return 9000; }), (Stereo{track.player.samples, track.player.samples}));
  EXPECT_THAT(track.player.pulls, ElementsAre(Pair(0, 4096), Pair(4096, 4096), Pair(8192, 808)));
}

TEST(AudioGraph, doesNotDependOnTheBlockSize) {
  const auto rendered = [](const auto& blockFrames) {
    Track first(noise(20000, 1)), second(noise(9000, 2));
    first.turnAllUp();
    second.turnAllUp();
    AudioGraph graph(48000);
    graph.setStrips({first.strip(), second.strip()});
    return pull(graph, 20000, blockFrames);
  };
  const auto whole = rendered([] { return 20000; });
  for (const int size : {1, 15, 64, 127, 512, 4096})
    EXPECT_EQ(rendered([size] { return size; }), whole) << size;
  EXPECT_EQ(rendered([random = std::make_shared<std::mt19937>(3)] {
              return static_cast<int>((*random)() % 700) + 1;
            }),
            whole);
}

TEST(AudioGraph, skipsSilenceWithoutChangingTheResult) {
  const int silentFrames = 30 * 48000, block = 4800;
  Samples sound = noise(block);
  sound.resize(static_cast<std::size_t>(silentFrames));
  std::ranges::copy(noise(block, 2), std::back_inserter(sound));
  Track track(sound), plain(sound);
  track.turnAllUp();
  plain.turnAllUp();
  AudioGraph graph(48000);
  graph.setStrips({track.strip()});
  const int frameCount = static_cast<int>(sound.size());
  const auto out = pull(graph, frameCount, [] { return block; });
  const FlushDenormals guard;
  Stereo expected{Samples(sound.size()), Samples(sound.size())};
  plain.equalizer.process(sound.data(), frameCount);
  plain.delay.process(sound.data(), frameCount);
  plain.reverb.process(sound.data(), expected.left.data(), expected.right.data(), frameCount);
  plain.channel.process(expected.left.data(), expected.right.data(), frameCount);
  EXPECT_EQ(out.left, expected.left);
  EXPECT_EQ(out.right, expected.right);
  EXPECT_EQ(out.left[static_cast<std::size_t>(silentFrames - 1)], 0) << "the tail had ended";
}

TEST(AudioGraph, sumsInTheOrderOfTheStrips) {
  Track large({1e8F}), negative({-1e8F}), small({1});
  AudioGraph graph(48000);
  graph.setStrips({large.strip(), negative.strip(), small.strip()});
  EXPECT_EQ(pull(graph, 1).left[0], 1);
  graph.setStrips({large.strip(), small.strip(), negative.strip()});
  EXPECT_EQ(pull(graph, 1).left[0], 0) << "the small one is lost in the large one";
  graph.setStrips({});
  EXPECT_EQ(pull(graph, 1).left[0], 0);
}

TEST(AudioGraph, rendersTheSameOnAnyNumberOfThreads) {
  const auto rendered = [](WorkerTeam* team) {
    std::vector<std::unique_ptr<Track>> tracks;
    std::vector<Strip> strips;
    for (unsigned i = 0; i < 7; ++i) {
      tracks.push_back(std::make_unique<Track>(noise(10000, i)));
      if (i % 3 != 0) tracks.back()->turnAllUp();
      strips.push_back(tracks.back()->strip());
    }
    AudioGraph graph(44100, team);
    graph.setStrips(strips);
    graph.setOutputVolume(0.7F);
    return pull(graph, 12000);
  };
  const auto alone = rendered(nullptr);
  for (const int threads : {1, 2, 3}) {
    WorkerTeam team(threads);
    EXPECT_EQ(rendered(&team), alone) << threads;
  }
}

TEST(AudioGraph, tapsThePeakOfEachStretch) {
  Samples sound(4000);
  sound[1000] = -0.5F;
  sound[1024] = 0.25F;
  sound[3000] = 1;
  Track track(sound);
  track.channel.setPan(-1);
  std::vector<float> peaks;
  AudioGraph graph(48000);
  graph.setTap([&](float peak) { peaks.push_back(peak); });
  graph.setOutputVolume(0.5F);
  graph.setStrips({track.strip()});
  pull(graph, 4000, [] { return 300; });
  EXPECT_THAT(peaks, ElementsAre(0.25F, 0.125F, 0.5F)) << "the last stretch isn't full";
}

TEST(AudioGraph, turnsABadBlockIntoSilence) {
  Samples sound = noise(1024);
  sound[100] = std::nanf("");
  sound[600] = HUGE_VALF;
  Track track(sound);
  track.turnAllUp();
  AudioGraph graph(48000);
  graph.setStrips({track.strip()});
  EXPECT_THAT(pull(graph, 1024).left, testing::Each(0.0F));
}

/// Counts calls that reach it after its track was told to have left the graph.
struct Guarded : SourceNode {
  void render(double, int, std::span<float> buffer) noexcept override {
    if (isDetached) ++lateCalls;
    std::ranges::fill(buffer, 0.1F);
    ++calls;
    if (isDetached) ++lateCalls;
  }
  std::atomic<bool> isDetached = false;
  std::atomic<int> calls = 0, lateCalls = 0;
};

TEST(AudioGraph, neverCallsADetachedSource) {
  AudioGraph graph(48000);
  std::atomic<bool> isRunning = true;
  std::thread device([&] {
    Samples left(256), right(256);
    for (double time = 0; isRunning; time += 256) graph.render(time, 256, left.data(), right.data());
  });
  int lateCalls = 0;
  for (int round = 0; round < 100; ++round) {
    Track track({});
    Guarded source;
    graph.setStrips({{&source, &track.equalizer, &track.delay, &track.reverb, &track.channel}});
    while (source.calls == 0) std::this_thread::yield();
    graph.setStrips({});
    source.isDetached = true;
    std::this_thread::yield();
    lateCalls += source.lateCalls;
  }
  isRunning = false;
  device.join();
  EXPECT_EQ(lateCalls, 0);
}

TEST(WorkerTeam, callsEachIndexOnce) {
  WorkerTeam team(4);
  EXPECT_EQ(team.threadCount(), 4);
  for (const int count : {0, 1, 3, 100}) {
    for (int round = 0; round < 200; ++round) {
      std::vector<std::atomic<int>> calls(static_cast<std::size_t>(count));
      team.run(count, [&](int i) { ++calls[static_cast<std::size_t>(i)]; });
      ASSERT_TRUE(std::ranges::all_of(calls, [](const auto& n) { return n == 1; }));
    }
  }
}

}  // namespace
}  // namespace platform
