#pragma once

#include "VelmoraCore/Song/Song.h"

namespace velmora::benchmarks {

enum class Effects { dry, wet };
enum class Notes { held, none };

/// What all render goals are measured on: tracks of one synthesizer preset that each hold eight notes for a
/// minute, 32 four-beat bars at 128 bpm, and start them anew every two beats. Wet means +3/-2/+2 dB and 0.3
/// of delay and reverb on every track.
struct FixedWork {
  static constexpr SynthPreset preset = SynthPreset::miniSynth;

  int trackCount = 8;
  Effects effects = Effects::dry;
  Notes notes = Notes::held;

  Song song() const;
};

}  // namespace velmora::benchmarks
