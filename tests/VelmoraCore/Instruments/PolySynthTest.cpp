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
  const auto renderBoth = [&] {
    std::vector<float> a(3000), b(3000);
    synth.render(a.data(), 3000);
    reference.render(b.data(), 3000);
    return firstDifference(a, b);
  };
  for (const std::uint8_t pitch : {40, 52, 59}) {
    synth.noteOn(pitch, 90, 3);
    reference.noteOn(pitch, 90, 3);
  }
  EXPECT_EQ(renderBoth(), -1);
  for (const SynthPreset preset : {SynthPreset::keys, SynthPreset::keys, SynthPreset::pad}) {
    synth.setPreset(preset);
    reference.setPreset(preset);
    EXPECT_EQ(renderBoth(), -1);
  }
}

std::vector<float> rendered(Instrument& instrument, int frames) {
  std::vector<float> result(static_cast<std::size_t>(frames));
  instrument.render(result.data(), frames);
  return result;
}

bool isSilent(const std::vector<float>& samples) {
  return std::all_of(samples.begin(), samples.end(), [](float x) { return x == 0; });
}

TEST(PolySynthTest, AReleasedPendingNoteNeverSounds) {
  PolySynth synth(SynthPreset::bass);
  for (std::uint8_t pitch = 40; pitch < 49; ++pitch) synth.noteOn(pitch, 100, 0);  // the ninth is pending
  for (std::uint8_t pitch = 40; pitch < 49; ++pitch) synth.noteOff(pitch, 10);
  rendered(synth, 44100);
  EXPECT_TRUE(isSilent(rendered(synth, 512)));
}

TEST(PolySynthTest, AStolenVoiceFadesFor221FramesAt44100) {
  // The stolen note is the only audible one: the others have ended their attack at full release.
  PolySynth stolen(SynthPreset::keys), kept(SynthPreset::keys);
  for (PolySynth* synth : {&stolen, &kept}) {
    for (std::uint8_t pitch = 40; pitch < 48; ++pitch) synth->noteOn(pitch, 100, 0);
    rendered(*synth, 2000);
  }
  stolen.noteOn(80, 100, 0);
  stolen.noteOff(80, 1);  // the fade ends in silence
  kept.noteOff(40, 0);
  const auto faded = rendered(stolen, 400);
  kept.noteOff(40, 0);
  PolySynth seven(SynthPreset::keys);
  for (std::uint8_t pitch = 41; pitch < 48; ++pitch) seven.noteOn(pitch, 100, 0);
  rendered(seven, 2000);
  const auto others = rendered(seven, 400);
  EXPECT_NE(faded[219], others[219]);  // still fading on its 220th frame
  EXPECT_TRUE(std::equal(faded.begin() + 220, faded.end(), others.begin() + 220));
}

}  // namespace
}  // namespace velmora
