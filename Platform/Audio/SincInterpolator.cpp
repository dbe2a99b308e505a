#include "Platform/Audio/SincInterpolator.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace platform {
namespace {

constexpr int zeroCrossings = 24;
constexpr int pointsPerCrossing = 512;
constexpr double kaiserBeta = 9;

/// One side of the kernel, its middle first, with a point more than the end for who looks at two neighbours.
std::vector<float> makeKernel() {
  std::vector<float> kernel{1};
  for (int i = 1; i <= zeroCrossings * pointsPerCrossing; ++i) {
    const double x = static_cast<double>(i) / pointsPerCrossing, edge = x / zeroCrossings;
    const double window =
        std::cyl_bessel_i(0.0, kaiserBeta * std::sqrt(1 - edge * edge)) / std::cyl_bessel_i(0.0, kaiserBeta);
    kernel.push_back(static_cast<float>(window * std::sin(std::numbers::pi * x) / (std::numbers::pi * x)));
  }
  kernel.push_back(0);
  return kernel;
}

const std::vector<float>& sharedKernel() {
  static const std::vector<float> kernel = makeKernel();
  return kernel;
}

}  // namespace

SincInterpolator::SincInterpolator(double step)
    : kernel_(sharedKernel()), bandwidth_(std::min(1.0, 1 / step)), reach_(zeroCrossings / bandwidth_) {}

SincInterpolator::Frame SincInterpolator::at(double position, const float* left, const float* right,
                                             std::int64_t frameCount) const noexcept {
  const auto first = std::max<std::int64_t>(0, static_cast<std::int64_t>(std::ceil(position - reach_)));
  const auto end = std::min(frameCount, static_cast<std::int64_t>(std::floor(position + reach_)) + 1);
  Frame sum;
  for (std::int64_t i = first; i < end; ++i) {
    const double place = std::abs(position - static_cast<double>(i)) * bandwidth_ * pointsPerCrossing;
    const auto point = std::min(static_cast<std::size_t>(place), kernel_.size() - 2);
    const auto fraction = static_cast<float>(place - static_cast<double>(point));
    const float weight = kernel_[point] + fraction * (kernel_[point + 1] - kernel_[point]);
    sum.left += weight * left[i];
    sum.right += weight * right[i];
  }
  const auto gain = static_cast<float>(bandwidth_);
  return {sum.left * gain, sum.right * gain};
}

}  // namespace platform
