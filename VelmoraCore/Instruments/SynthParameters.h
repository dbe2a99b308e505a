#pragma once

#include "VelmoraCore/DSP/Oscillator.h"
#include "VelmoraCore/Song/TrackKind.h"

namespace velmora {

/// One sound of the polyphonic synthesizer. Times in seconds, frequencies in hertz, detuning in cents.
struct SynthParameters {
  Waveform osc1Waveform;
  Waveform osc2Waveform;
  float osc1DetuneCents;
  float osc2DetuneCents;
  int osc2Octave;
  float osc1Level;
  float osc2Level;
  float cutoffHz;
  float filterEnvelopeHz;
  float resonance;
  float filterAttack;
  float filterDecay;
  float filterSustain;
  float filterRelease;
  float ampAttack;
  float ampDecay;
  float ampSustain;
  float ampRelease;
  float level;

  /// The sound of a preset.
  static const SynthParameters& standard(SynthPreset preset);
};

}  // namespace velmora
