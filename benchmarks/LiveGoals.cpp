#include <algorithm>
#include <vector>

#include "VelmoraCore/Instruments/InstrumentFactory.h"
#include "benchmarks/FixedWork.h"
#include "benchmarks/Goals.h"
#include "benchmarks/TrackRack.h"
#include "benchmarks/support/Measure.h"

namespace velmora::benchmarks {

namespace {

constexpr double sampleRate = 48000;
constexpr int blockFrames = 512;
constexpr std::size_t blockCount = 20000;
constexpr double blockSeconds = blockFrames / sampleRate;
constexpr int plays = 3;

/// The time of each block by both clocks.
struct BlockTimes {
  std::vector<double> wall;
  std::vector<double> processor;  // of the thread: without what others did meanwhile
};

BlockTimes playBlocks(const Song& song) {
  const auto makeInstrument = [&] { return InstrumentFactory::make(song.tracks[0].kind); };
  TrackRack rack(song, sampleRate, {makeInstrument, makeInstrument});
  std::vector<float> left(blockFrames), right(blockFrames);
  BlockTimes times{std::vector<double>(blockCount), std::vector<double>(blockCount)};
  for (std::size_t block = 0; block < blockCount; ++block) {
    times.wall[block] = elapsed(CLOCK_MONOTONIC, [&] {
      times.processor[block] = elapsed(CLOCK_THREAD_CPUTIME_ID, [&] {
        rack.graph().render(static_cast<double>(block * blockFrames), blockFrames, left.data(), right.data());
      });
    });
  }
  return times;
}

/// The time that all but the slowest thousandth stay below.
double percentile999(std::vector<double> times) {
  const auto place = times.begin() + static_cast<std::ptrdiff_t>(times.size() * 999 / 1000);
  std::nth_element(times.begin(), place, times.end());
  return *place;
}

}  // namespace

void measureLiveBlocks(Report& report) {
  const Song song = FixedWork{.trackCount = 16, .effects = Effects::wet}.song();
  const BlockTimes times = playBlocks(song);
  // Each play asks the same of each block, so the least of several is the block's own cost, and what is above
  // it came from outside.
  std::vector<double> own = times.processor;
  for (int play = 1; play < plays; ++play)
    std::ranges::transform(own, playBlocks(song).processor, own.begin(),
                           [](double a, double b) { return std::min(a, b); });

  const auto add = [&report](const std::string& name, double seconds) {
    report.add("live block, " + name + " (ref: its time)", Amount::seconds(seconds),
               Amount::seconds(blockSeconds), Goal::ratio(0.25));
  };
  add("worst", std::ranges::max(times.wall));
  add("worst, processor", std::ranges::max(times.processor));
  add("worst, least of " + std::to_string(plays) + " plays", std::ranges::max(own));
  add("99.9 %", percentile999(times.wall));
  add("99.9 %, processor", percentile999(times.processor));
  add("median", median(times.wall));
}

}  // namespace velmora::benchmarks
