#pragma once

#include <span>

namespace platform {

/// What a strip of the graph pulls its sound from.
class SourceNode {
 public:
  virtual ~SourceNode() = default;

  /// [audio thread] Writes `frameCount` mono samples, of which the first belongs to `sampleTime` (frames
  /// since the graph's own origin), to the front of `buffer`, which holds at least as many and arrives with
  /// unspecified contents.
  virtual void render(double sampleTime, int frameCount, std::span<float> buffer) noexcept = 0;
};

}  // namespace platform
