// Prints a digest of what the instruments play, for each kernel and for the reference: the lines of all
// builds, whatever their compiler and optimisation, must be the same, and all of a row as well.

#include <bit>
#include <cstdint>
#include <cstdio>
#include <span>

#include "VelmoraCore/Instruments/DrumSynth.h"
#include "VelmoraCore/Instruments/PolySynth.h"
#include "tests/VelmoraCore/Instruments/Performance.h"
#include "tests/VelmoraCore/Instruments/ReferencePolySynth.h"

namespace {

using namespace velmora;

unsigned long long digest(std::span<const float> samples) {
  std::uint64_t state = 0xCBF29CE484222325U;  // FNV-1a
  for (const float sample : samples) state = (state ^ std::bit_cast<std::uint32_t>(sample)) * 0x100000001B3U;
  return state;
}

unsigned long long digestOf(Instrument& instrument, double rate, unsigned seed) {
  instrument.prepare(rate, 4096);
  return digest(testing::Performance(seed).playedBy(instrument));
}

/// All drums, one after the other and over each other.
unsigned long long drumDigest(double rate) {
  DrumSynth drums;
  drums.prepare(rate, 4096);
  std::vector<float> samples(40 * 4096);
  for (int block = 0; block < 40; ++block) {
    const DrumSound sound = allDrumSounds()[static_cast<std::size_t>(block) % 8];
    drums.noteOn(pitch(sound), static_cast<std::uint8_t>(60 + block), 97 * block % 4096);
    drums.render(samples.data() + block * 4096, 4096);
  }
  return digest(samples);
}

}  // namespace

int main() {
  bool areSame = true;
  for (const double rate : {44100.0, 48000.0, 96000.0}) {
    for (unsigned seed = 100; seed < 110; ++seed) {
      const SynthPreset preset = allSynthPresets()[seed % 5];
      testing::ReferencePolySynth reference(preset);
      const auto expected = digestOf(reference, rate, seed);
      for (const VoiceKernel& kernel : voiceKernels()) {
        PolySynth synth(preset, kernel);
        areSame &= digestOf(synth, rate, seed) == expected;
      }
      std::printf("synth %.0f %u %016llx\n", rate, seed, expected);
    }
    std::printf("drums %.0f %016llx\n", rate, drumDigest(rate));
  }
  if (!areSame) std::puts("a kernel differs from the reference");
  return areSame ? 0 : 1;
}
