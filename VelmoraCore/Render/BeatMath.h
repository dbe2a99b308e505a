#pragma once

#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// The sums between beats and frames that every renderer shares. [audio thread]
struct BeatMath {
  static double beatsPerFrame(double bpm, double sampleRate) noexcept;
  static double frames(double forBeats, double bpm, double sampleRate) noexcept;
  static double beats(double forFrames, double bpm, double sampleRate) noexcept;

  /// The frame of a block that lies `beatDelta` after its start, from 0 to `frameCount` - 1. An event that
  /// lands exactly on a frame stays there whatever the division's error.
  static int frameOffset(int frameCount, double beatDelta, double beatsPerFrame) noexcept;

  /// The beat moved by whole lengths of the range into it; the range's start where that makes no sense.
  static double wrap(double beat, LoopRange into) noexcept;
};

}  // namespace velmora
