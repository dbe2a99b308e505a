#include "Waveform/Peaks.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace waveform {

namespace {

float largestMagnitude(std::span<const float> bin) {
  float largest = 0;
  for (const float value : bin) largest = std::max(largest, std::abs(value));
  return largest;
}

}  // namespace

std::vector<float> peaks(const velmora::AudioSample& sample, std::size_t count) {
  const std::span<const float> frames(sample.samples);
  const std::size_t step = std::max<std::size_t>(frames.size() / std::max<std::size_t>(count, 1), 1);
  std::vector<float> overview;
  overview.reserve(2 * (frames.size() / step + 1));
  for (std::size_t start = 0; start < frames.size(); start += step) {
    const float peak = largestMagnitude(frames.subspan(start, std::min(step, frames.size() - start)));
    overview.insert(overview.end(), {-peak, peak});
  }
  return overview;
}

}  // namespace waveform
