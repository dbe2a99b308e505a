#include <bit>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "VelmoraCore/DSP/ADSR.h"
#include "VelmoraCore/DSP/Biquad.h"
#include "VelmoraCore/DSP/NoiseSource.h"
#include "VelmoraCore/DSP/OnePole.h"
#include "VelmoraCore/DSP/Oscillator.h"
#include "VelmoraCore/DSP/SmoothedValue.h"
#include "VelmoraCore/DSP/WaveformShapes.h"
#include "tests/support/StepRow.h"

namespace velmora {
namespace {

using testing::StepRow;

const StepRow stepRows[] = {
#include "tests/VelmoraCore/DSP/StepValues.inc"
};

std::function<float(int step)> unitFor(const std::string& name) {
  std::istringstream words(name);
  std::string unit;
  float first = 0, second = 0;
  words >> unit >> first >> second;
  if (unit == "envelope") {
    ADSR envelope(0.003F, 0.2F, 0.7F, 0.05F, first);
    envelope.noteOn();
    return [envelope](int step) mutable {
      if (step == 30000) envelope.noteOff();
      return envelope.next();
    };
  }
  if (unit == "noise")
    return [noise = NoiseSource(static_cast<std::uint32_t>(first))](int) mutable { return noise.next(); };
  if (const auto shape = waveform(unit)) {
    Oscillator oscillator(*shape);
    oscillator.setFrequency(440, first);
    return [oscillator](int) mutable { return oscillator.nextSample(); };
  }
  Biquad filter;
  if (unit == "lowPass") filter.setLowPass(first, first == 1000 ? 1.2F : 0.1F, second);
  if (unit == "highPass") filter.setHighPass(first, 0.7F, second);
  if (unit == "bandPass") filter.setBandPass(first, 1, second);
  return [filter](int step) mutable { return filter.process(step == 0 ? 1.0F : 0.0F); };
}

TEST(StepValuesTest, EveryUnitStepsExactly) {
  for (const StepRow& row : stepRows) {
    const auto unit = unitFor(row.name);
    int next = 0;
    for (const StepRow::Step& step : row.steps) {
      while (next < step.number) unit(next++);
      ASSERT_EQ(unit(next++), step.value) << row.name << ", step " << step.number;
    }
  }
}

TEST(ADSRTest, EdgesOfItsStages) {
  ADSR instant(0, 0.1F, 0.5F, 0.1F, 44100);
  instant.noteOff();
  EXPECT_EQ(instant.next(), 0) << "a release from idle does nothing";
  instant.noteOn();
  EXPECT_EQ(instant.next(), 1);
  EXPECT_EQ(instant.stage(), ADSR::Stage::decay);

  ADSR plucked(0, 0.01F, 0, 0.1F, 44100);
  plucked.noteOn();
  int steps = 0;
  while (plucked.isActive() && steps < 1000) plucked.next(), ++steps;
  EXPECT_EQ(plucked.stage(), ADSR::Stage::idle) << "without a sustain it ends by itself";
  EXPECT_NEAR(steps, 442, 2);

  ADSR wild(-1, 0, 7, 0, 0);
  EXPECT_EQ(wild.sampleRate(), 1);
  EXPECT_EQ(wild.sustain(), 7);
  EXPECT_EQ(wild.sustainLevel(), 1);
  wild.setSustain(-1);
  EXPECT_EQ(wild.sustainLevel(), 0);
}

TEST(BiquadTest, BadArgumentsAreClamped) {
  const auto lowPass = [](float cutoff, float q, float rate) {
    Biquad filter;
    filter.setLowPass(cutoff, q, rate);
    return std::vector{filter.b0, filter.b1, filter.b2, filter.a1, filter.a2};
  };
  EXPECT_EQ(lowPass(30000, 0.1F, 44100), lowPass(44100, 0.1F, 44100));
  EXPECT_EQ(lowPass(1000, 0.01F, 44100), lowPass(1000, 0.05F, 44100));
  EXPECT_EQ(lowPass(-5, 1, 44100), lowPass(1, 1, 44100));
  EXPECT_EQ(lowPass(1000, 1, -1), lowPass(0.499F, 1, 1));
}

TEST(OscillatorTest, FrequenciesAndPhasesAreClamped) {
  Oscillator oscillator(Waveform::saw);
  oscillator.setFrequency(30000, 44100);
  EXPECT_EQ(oscillator.phaseIncrement, 0.5F);
  oscillator.setFrequency(440, 0);
  EXPECT_EQ(oscillator.phaseIncrement, 0);
  oscillator.setFrequency(-440, 44100);
  oscillator.reset(-0.25F);
  EXPECT_EQ(oscillator.phase, 0.75F);
  EXPECT_EQ(oscillator.nextSample(), 0.5F) << "no correction without an increment";
  EXPECT_EQ(oscillator.phase, 0.75F);
  for (const Waveform shape : allWaveforms) EXPECT_EQ(waveform(storedValue(shape)), shape);
  EXPECT_FALSE(waveform("Saw"));
}

TEST(OnePoleTest, SplitsASignalIntoTwo) {
  OnePole low, high, fresh;
  low.setLowPass(500, 48000);
  high.setHighPass(500, 48000);
  NoiseSource noise(3);
  for (int i = 0; i < 2000; ++i) {
    const float x = noise.next();
    ASSERT_NEAR(low.process(x) + high.process(x), x, 1e-6F);
  }
  EXPECT_EQ(fresh.process(0.25F), 0.25F);
  fresh.setLowPass(-1, 48000);
  EXPECT_EQ(fresh.coefficient, 0);
}

TEST(SmoothedValueTest, ArrivesForGood) {
  SmoothedValue jump(0.5F);
  jump.setTarget(1);
  EXPECT_EQ(jump.nextSample(), 1);
  for (const float target : {1.0F, -3e9F, 1e-9F, 0.0F}) {
    SmoothedValue value(100);
    value.setSmoothingTime(0.001F, 48000);
    value.setTarget(target);
    for (int i = 0; i < 2000 && value.isSmoothing(); ++i) value.nextSample();
    EXPECT_EQ(value.current, target);
  }
}

#ifdef VELMORA_SANITIZED
constexpr std::uint32_t stride = 1021;
#else
constexpr std::uint32_t stride = 13;
#endif

template <Waveform waveform>
void expectPlainAwayFromSteps() {
  for (const float d : {0.0F, 1e-5F, 1e-4F, 0.0101F, 0.2499F, 0.5F}) {
    int nearCount = 0, count = 0, wrongCount = 0;
    const auto check = [&](std::uint32_t bits) {
      const float p = std::bit_cast<float>(bits);
      const bool isNear = shapes::isNearStep<waveform>(p, d);
      ++count;
      nearCount += isNear;
      wrongCount += !isNear && shapes::shape<waveform>(p, d) != shapes::plain<waveform>(p);
    };
    const auto first = std::bit_cast<std::uint32_t>(0x1p-6F), half = std::bit_cast<std::uint32_t>(0.5F);
    for (auto bits = first; bits < std::bit_cast<std::uint32_t>(1.0F); bits += stride) check(bits);
    for (auto bits = half - 100; bits < half + 100; ++bits) check(bits);  // where rounding decides for a side
    EXPECT_EQ(wrongCount, 0) << d;
    EXPECT_TRUE(d > 0.1F || nearCount < count / 8) << d << ": else nothing is saved";
  }
}

TEST(WaveformShapesTest, ASawIsPlainAwayFromItsStep) { expectPlainAwayFromSteps<Waveform::saw>(); }
TEST(WaveformShapesTest, ASquareIsPlainAwayFromItsSteps) { expectPlainAwayFromSteps<Waveform::square>(); }

}  // namespace
}  // namespace velmora
