#pragma once

#include <cstdint>
#include <vector>

namespace platform {

/// Reads a stereo sound at another rate, band-limited to the lower of the two: a sinc of 24 zero crossings a
/// side under a Kaiser window, with an error near -90 dB (Smith, "Digital Audio Resampling").
class SincInterpolator {
 public:
  struct Frame {
    float left = 0, right = 0;
  };

  /// `step` is how many frames of the sound a frame of the output takes. Not on the audio thread.
  explicit SincInterpolator(double step);

  /// [audio thread] The sound at a position between its frames; around it is silence.
  Frame at(double position, const float* left, const float* right, std::int64_t frameCount) const noexcept;

 private:
  const std::vector<float>& kernel_;
  double bandwidth_;  // of the lower rate, in the sound's own
  double reach_;      // of the kernel to each side, in frames of the sound
};

}  // namespace platform
