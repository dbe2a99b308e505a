#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

#include "VelmoraCore/Instruments/PolySynth.h"
#include "tests/VelmoraCore/Instruments/Performance.h"
#include "tests/VelmoraCore/Instruments/ReferencePolySynth.h"

namespace velmora {
namespace {

using testing::Performance;
using testing::ReferencePolySynth;

std::ptrdiff_t firstDifference(const std::vector<float>& a, const std::vector<float>& b) {
  const auto isSame = [](float x, float y) { return std::memcmp(&x, &y, sizeof(x)) == 0; };
  const auto [at, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(), isSame);
  return at == a.end() && other == b.end() ? -1 : at - a.begin();
}

TEST(PolySynthTest, EveryKernelMatchesTheReferenceBitForBit) {
  for (const VoiceKernel& kernel : voiceKernels()) {
    for (const double rate : {44100.0, 48000.0, 96000.0, 0.0, 50.0}) {
      for (unsigned seed = 0; seed < 20; ++seed) {
        const SynthPreset preset = allSynthPresets()[seed % 5];
        const Performance performance(seed);
        PolySynth synth(preset, kernel);
        ReferencePolySynth reference(preset);
        synth.prepare(rate, 4096);
        reference.prepare(rate, 4096);
        const auto played = performance.playedBy(synth);
        ASSERT_EQ(firstDifference(played, performance.playedBy(reference)), -1)
            << kernel.name << " at " << rate << " Hz, seed " << seed;
        ASSERT_TRUE(std::all_of(played.begin(), played.end(), [](float x) { return std::abs(x) <= 1; }));
      }
    }
  }
}

TEST(PolySynthTest, NotesHeldForLongMatchTheReference) {
#ifdef VELMORA_SANITIZED
  constexpr int frames = 100000;
#else
  constexpr int frames = 1500000;  // phases meet every rounding on the way
#endif
  for (const SynthPreset preset : {SynthPreset::miniSynth, SynthPreset::lead}) {
    ReferencePolySynth reference(preset);
    const auto held = [&](Instrument& instrument) {
      for (const std::uint8_t pitch : {28, 47, 59, 64, 76, 83, 100, 125}) instrument.noteOn(pitch, 100, 0);
      std::vector<float> result(frames);
      instrument.render(result.data(), frames);
      return result;
    };
    const auto expected = held(reference);
    for (const VoiceKernel& kernel : voiceKernels()) {
      PolySynth synth(preset, kernel);
      ASSERT_EQ(firstDifference(held(synth), expected), -1) << kernel.name;
    }
  }
}

TEST(PolySynthTest, ANewPresetTakesOverSoundingNotesAtTheNextBlock) {
  PolySynth synth(SynthPreset::miniSynth);
  ReferencePolySynth reference(SynthPreset::miniSynth);
  const auto played = [](auto& instrument) {
    std::vector<float> result(12000);
    for (const std::uint8_t pitch : {40, 52, 59}) instrument.noteOn(pitch, 90, 3);
    instrument.render(result.data(), 3000);
    for (int block = 1; block < 4; ++block) {
      instrument.setPreset(block < 3 ? SynthPreset::keys : SynthPreset::pad);
      instrument.render(&result[static_cast<std::size_t>(3000 * block)], 3000);
    }
    return result;
  };
  EXPECT_EQ(firstDifference(played(synth), played(reference)), -1);
}

}  // namespace
}  // namespace velmora
