#pragma once

#include <cstddef>
#include <vector>

#include "VelmoraCore/Render/AudioSample.h"

namespace waveform {

/// The overview of a sample of any length: for each of its bins -p and +p, where p is the largest magnitude
/// in it. There are `count` to twice as many bins, all of the same length but the last, or one a frame of a
/// shorter sample. One pass over the frames.
std::vector<float> peaks(const velmora::AudioSample& sample, std::size_t count);

}  // namespace waveform
