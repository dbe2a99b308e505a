#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "VelmoraCore/Instruments/DrumSynth.h"
#include "VelmoraCore/Instruments/InstrumentEventQueue.h"
#include "tests/support/StepRow.h"

namespace velmora {
namespace {

using testing::StepRow;
const StepRow drumRows[] = {
#include "tests/VelmoraCore/Instruments/DrumValues.inc"
};

std::vector<float> rendered(Instrument& instrument, int frames) {
  std::vector<float> result(static_cast<std::size_t>(frames));
  instrument.render(result.data(), frames);
  return result;
}

TEST(DrumSynthTest, EverySoundStepsExactly) {
  const char* const names[] = {"kick", "rim", "snare", "clap", "closedHat", "lowTom", "openHat", "perc"};
  for (const StepRow& row : drumRows) {
    const std::string name = row.name, rate = name.substr(name.find(' '));
    const auto index = std::ranges::find(names, name.substr(0, name.find(' '))) - std::begin(names);
    DrumSynth drums;
    drums.prepare(std::stod(rate), 4096);
    drums.noteOn(pitch(allDrumSounds()[static_cast<std::size_t>(index)]), 90, 0);
    const auto samples = rendered(drums, 3000);
    for (const StepRow::Step& step : row.steps) {
      ASSERT_EQ(samples[static_cast<std::size_t>(step.number)], step.value)
          << row.name << ", step " << step.number;
    }
  }
}

TEST(DrumSynthTest, WhatIsNoHitQueuesNothing) {
  DrumSynth drums;
  drums.noteOn(60, 100, 0);
  drums.noteOn(36, 0, 0);
  drums.noteOn(200, 100, 0);
  EXPECT_EQ(rendered(drums, 512), std::vector<float>(512));
}

TEST(DrumSynthTest, HitsPlayOutAndEnd) {
  DrumSynth drums, cut;
  for (DrumSynth* kit : {&drums, &cut}) {
    for (const DrumSound sound : allDrumSounds()) kit->noteOn(pitch(sound), 127, 5);
    rendered(*kit, 100);
  }
  cut.noteOn(36, 127, 0);  // forgotten
  cut.allNotesOff();
  for (const DrumSound sound : allDrumSounds()) cut.noteOff(pitch(sound), 0);
  EXPECT_EQ(rendered(cut, 4000), rendered(drums, 4000));
  EXPECT_NE(rendered(drums, 512), std::vector<float>(512));
  rendered(drums, 88200);
  EXPECT_EQ(rendered(drums, 512), std::vector<float>(512));
}

TEST(DrumSynthTest, TwoHitsNeverSoundAlike) {
  DrumSynth drums;
  drums.noteOn(38, 100, 0);
  const auto first = rendered(drums, 2000);
  drums.noteOn(38, 100, 0);
  EXPECT_NE(rendered(drums, 2000), first);
}

TEST(DrumSynthTest, VelocityFollowsItsCurve) {
  const auto loudness = [](std::uint8_t velocity) {
    DrumSynth drums;
    drums.noteOn(45, velocity, 0);
    const auto samples = rendered(drums, 2000);
    return *std::max_element(samples.begin(), samples.end());
  };
  EXPECT_NEAR(loudness(64) / loudness(127), 0.3539F, 1e-3F);
  EXPECT_EQ(loudness(255), loudness(127));
}

TEST(InstrumentEventQueueTest, KeepsTheOrderOfFramesAndOfArrival) {
  InstrumentEventQueue queue(4);
  EXPECT_TRUE(queue.enqueue(5, 1, 0, false));
  EXPECT_TRUE(queue.enqueue(3, 2, 9, true));
  EXPECT_TRUE(queue.enqueue(5, 3, 9, true));
  EXPECT_TRUE(queue.enqueue(8, 4, 9, true));
  EXPECT_FALSE(queue.enqueue(0, 5, 9, true));
  std::string log;
  const auto run = [&](int frames) {
    log.clear();
    queue.runBlock(
        frames, [&](const InstrumentEventQueue::Event& e) { log += "e" + std::to_string(e.pitch) + " "; },
        [&](int from, int to) { log += std::to_string(from) + "-" + std::to_string(to) + " "; });
  };
  run(0);
  EXPECT_EQ(log, "") << "no frames leave the queue as it is";
  run(8);
  EXPECT_EQ(log, "0-3 e2 3-5 e1 e3 5-8 e4 ") << "an event at the block's end comes after its last sample";
  EXPECT_TRUE(queue.isEmpty());
}

TEST(InstrumentEventQueueTest, OverflowIsEarlyAndNeverLost) {
  DrumSynth full, early;
  for (int i = 0; i < 256; ++i) full.noteOn(36, 1, 400);
  full.noteOn(47, 100, 400);
  early.noteOn(47, 100, 0);
  EXPECT_EQ(rendered(full, 300), rendered(early, 300));
}

}  // namespace
}  // namespace velmora
