#pragma once

#include <vector>

namespace velmora {

/// Decoded mono audio, shared as `std::shared_ptr<const AudioSample>` and never changed once it is made.
struct AudioSample {
  std::vector<float> samples;  ///< finite, -1 to 1
  double sampleRate = 0;       ///< frames per second, of the source
};

}  // namespace velmora
