#pragma once

#include <array>
#include <span>

#include "Platform/Audio/DelayLine.h"

namespace platform {

/// How a room rings: the time in seconds in which it falls by 60 dB.
struct RoomDecay {
  double lowSeconds = 0;     // towards 0 Hz
  double highSeconds = 0;    // at `highFrequency`
  double highFrequency = 0;  // Hz
};

/// Sixteen delay lines that feed back into each other through a Hadamard matrix: the late sound of a room.
///
/// Each line's loss belongs to its length, so that all resonances of a frequency decay alike (J.-M. Jot). The
/// loss is a symmetric filter of three taps, which, unlike a recursive one, runs along time in vectors. Even
/// lines are fed and heard on the left, odd ones on the right; the matrix carries each side to both.
class FeedbackDelayNetwork {
 public:
  static constexpr int lineCount = 16;

  /// Allocates and clears. `delays` in frames, each longer than a chunk of `DelayLine` and the taps'
  /// distance.
  void prepare(std::span<const int, lineCount> delays, const RoomDecay& decay, double sampleRate);
  /// [audio thread]
  void clear() noexcept;

  /// [audio thread] At most one chunk. Adds the network's answer to `left` and `right`, which it may not
  /// share with the inputs. Returns true if only zeros went into the lines.
  bool process(const float* inLeft, const float* inRight, float* left, float* right, int frameCount) noexcept;

  /// The energy of either side's answer to an impulse on both sides, at low frequencies.
  double energy() const noexcept { return energy_; }

 private:
  static constexpr int groupSize = 4;
  static constexpr int groupCount = lineCount / groupSize;
  using Chunk = std::array<float, DelayLine::chunkFrames>;

  struct Line {
    DelayLine line;
    int delay = 0;
    float centreTap = 0;
    float sideTap = 0;
  };

  void listen(std::size_t group, float* left, float* right, int frameCount) noexcept;
  void feed(std::size_t member, const float* in, int frameCount) noexcept;

  std::array<Line, lineCount> lines_;
  std::array<Chunk, lineCount> mixed_{};  // after the first half of the matrix
  int tapDistance_ = 1;
  double energy_ = 1;
};

}  // namespace platform
