#include "VelmoraCore/Instruments/SynthParameters.h"

namespace velmora {

namespace {

// One row a preset, in the order of SynthPreset: waveforms; detuning, octave and levels of the oscillators;
// cutoff, envelope and resonance of the filter; its envelope; the amplitude's envelope; level.
constexpr SynthParameters presets[] = {
    // clang-format off
    {Waveform::saw, Waveform::square,  0, 7,  0, 0.55F, 0.45F, 1200, 5000, 1.2F,
     0.003F, 0.25F, 0.3F, 0.2F,   0.003F, 0.2F, 0.7F, 0.25F,   1.0F},   // miniSynth
    {Waveform::saw, Waveform::sine,    0, 0, -1, 0.5F,  0.6F,   160,  900, 1.0F,
     0.002F, 0.15F, 0.15F, 0.1F,  0.002F, 0.25F, 0.6F, 0.12F,  1.2F},   // bass
    {Waveform::saw, Waveform::saw,    -9, 9,  0, 0.5F,  0.5F,   500, 1500, 0.7F,
     0.6F, 1.0F, 0.6F, 1.0F,      0.4F, 0.6F, 0.8F, 1.0F,      1.0F},   // pad
    {Waveform::square, Waveform::saw,  0, 5,  0, 0.5F,  0.5F,   900, 3000, 2.5F,
     0.005F, 0.3F, 0.4F, 0.15F,   0.004F, 0.15F, 0.8F, 0.12F,  0.8F},   // lead
    {Waveform::triangle, Waveform::sine, 0, 3, 0, 0.6F, 0.5F,  1500, 3000, 0.8F,
     0.002F, 0.3F, 0.25F, 0.3F,   0.002F, 0.4F, 0.35F, 0.35F,  1.3F},   // keys
    // clang-format on
};

}  // namespace

const SynthParameters& SynthParameters::standard(SynthPreset preset) {
  return presets[static_cast<int>(preset)];
}

}  // namespace velmora
