#pragma once

#include <vector>

namespace platform {

/// A delay line for work in chunks: a ring whose tail repeats its head, so that the frames of a chunk lie
/// side by side in memory wherever it starts, and loops along time run in vectors.
///
/// A chunk is read and written at `head`, which never overlap, then the line moves on by `advance`.
class DelayLine {
 public:
  static constexpr int chunkFrames = 128;
  static constexpr int tailFrames = chunkFrames + 16;  // a chunk and what a short filter reads around it

  /// Allocates and clears. `longestDelay` in frames.
  void prepare(int longestDelay);
  /// [audio thread]
  void clear() noexcept;

  /// [audio thread] The frame that was written `delay` frames before the one that comes next, and those after
  /// it: min(`delay`, `tailFrames`) frames are valid.
  const float* read(int delay) const noexcept;
  /// [audio thread] Where the next frames go, at most `chunkFrames`.
  float* head() noexcept { return ring_.data() + position_; }
  /// [audio thread] Takes up `frameCount` frames written at `head`.
  void advance(int frameCount) noexcept;
  /// Frames until what is written now can be read no more.
  int length() const noexcept { return length_; }

 private:
  std::vector<float> ring_;
  int length_ = 0;
  int position_ = 0;
};

}  // namespace platform
