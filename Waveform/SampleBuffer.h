#pragma once

#include <vector>

namespace waveform {

/// Samples to draw. They never change: what is drawn of them is known by the object.
struct SampleBuffer {
  const std::vector<float> samples;
};

}  // namespace waveform
