#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace waveform {

// The smallest or largest of every `factor` neighbours; values at the end that don't fill a bin are dropped.
std::vector<float> binMin(std::span<const float> values, std::size_t factor);
std::vector<float> binMax(std::span<const float> values, std::size_t factor);

}  // namespace waveform
