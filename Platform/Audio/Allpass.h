#pragma once

#include "Platform/Audio/DelayLine.h"

namespace platform {

/// A Schroeder allpass: spreads a sound in time and leaves its spectrum alone.
class Allpass {
 public:
  /// Allocates and clears. `delay` in frames, at least `DelayLine::chunkFrames`.
  void prepare(int delay, float gain);
  /// [audio thread]
  void clear() noexcept { line_.clear(); }
  /// [audio thread] At most one chunk, in place. Returns true if only zeros went into the line.
  bool process(float* samples, int frameCount) noexcept;

 private:
  DelayLine line_;
  int delay_ = 0;
  float gain_ = 0;
};

}  // namespace platform
