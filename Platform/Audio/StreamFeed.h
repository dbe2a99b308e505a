#pragma once

namespace platform {

/// The far end of a sound stream: what its callbacks call.
class StreamFeed {
 public:
  virtual ~StreamFeed() = default;

  /// [audio thread] Reads `frameCount` frames, any number from 1 up, from `input` or writes as many to
  /// `output`, interleaved; the side that the stream doesn't have is null.
  virtual void exchange(const float* input, float* output, int frameCount, double sampleRate) noexcept = 0;
};

}  // namespace platform
