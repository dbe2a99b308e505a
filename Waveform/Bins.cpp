#include "Waveform/Bins.h"

#include <algorithm>
#include <limits>

namespace waveform {

namespace {

template <class Choose>
std::vector<float> reduced(std::span<const float> values, std::size_t factor, float first, Choose choose) {
  std::vector<float> bins(values.size() / factor, first);
  for (std::size_t n = 0; n < bins.size() * factor; ++n)
    bins[n / factor] = choose(bins[n / factor], values[n]);
  return bins;
}

}  // namespace

std::vector<float> binMin(std::span<const float> values, std::size_t factor) {
  return reduced(values, factor, std::numeric_limits<float>::max(),
                 [](float a, float b) { return std::min(a, b); });
}

std::vector<float> binMax(std::span<const float> values, std::size_t factor) {
  return reduced(values, factor, std::numeric_limits<float>::lowest(),
                 [](float a, float b) { return std::max(a, b); });
}

}  // namespace waveform
