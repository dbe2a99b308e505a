#include "Waveform/Renderer.h"

#include <QColor>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Waveform/Bins.h"

namespace waveform {

namespace {

constexpr std::size_t fewestSamples = 3;
constexpr std::size_t coarsestCount = 5;  // a level of no more bins is the last

/// The rows, of `height`, whose middles lie between two values; the nearest row if there is none.
std::pair<int, int> rowsBetween(float smallest, float largest, int height) {
  const auto row = [&](float value) {
    return std::clamp((1 - static_cast<double>(value)) * height / 2 - 0.5, 0.0, height - 1.0);
  };
  const double top = row(largest), bottom = row(smallest);
  if (std::ceil(top) > bottom) {
    const int nearest = static_cast<int>(std::round((top + bottom) / 2));
    return {nearest, nearest};
  }
  return {static_cast<int>(std::ceil(top)), static_cast<int>(std::floor(bottom))};
}

/// Fills the columns whose bar covers the row, clears the others.
void fillLine(QRgb* __restrict line, int y, const std::vector<int>& tops, const std::vector<int>& bottoms,
              QRgb color) {
  const std::size_t width = tops.size();
  const int* const top = tops.data();
  const int* const bottom = bottoms.data();
  for (std::size_t x = 0; x < width; ++x)
    line[x] = static_cast<int>(y >= top[x]) & static_cast<int>(y <= bottom[x]) ? color : 0;
}

}  // namespace

void Renderer::set(std::shared_ptr<const SampleBuffer> samples, std::int64_t start, std::int64_t length) {
  start_ = start;
  length_ = length;
  if (samples == samples_) return;
  samples_ = std::move(samples);
  build();
}

void Renderer::build() {
  minBuffers_.clear();
  maxBuffers_.clear();
  if (!samples_ || samples_->samples.size() < fewestSamples) return;
  minBuffers_.push_back(samples_->samples);
  maxBuffers_.push_back(samples_->samples);
  while (minBuffers_.back().size() > coarsestCount) {
    minBuffers_.push_back(binMin(minBuffers_.back(), 2));
    maxBuffers_.push_back(binMax(maxBuffers_.back(), 2));
  }
}

std::optional<std::size_t> Renderer::level(double virtualWidth) const {
  if (minBuffers_.empty()) return {};
  const auto fits = [&](const auto& bins) { return static_cast<double>(bins.size()) < virtualWidth; };
  const auto found = std::ranges::find_if(minBuffers_, fits);
  return std::min(static_cast<std::size_t>(found - minBuffers_.begin()), minBuffers_.size() - 1);
}

Renderer::Bins Renderer::shownBins(int width) const {
  if (minBuffers_.empty() || width <= 0 || length_ <= 0) return {};
  const auto total = static_cast<double>(samples_->samples.size());
  const double startFraction = static_cast<double>(start_) / total;
  const double lengthFraction = static_cast<double>(length_) / total;
  const std::size_t chosen = *level(width / lengthFraction);
  const auto size = static_cast<double>(minBuffers_[chosen].size());
  const auto offset = static_cast<std::size_t>(std::clamp(startFraction * size, 0.0, size));
  const auto count = static_cast<std::size_t>(std::min(lengthFraction * size, size));
  const std::size_t held = std::min(count, minBuffers_[chosen].size() - offset);
  return {std::span(minBuffers_[chosen]).subspan(offset, held),
          std::span(maxBuffers_[chosen]).subspan(offset, held)};
}

std::vector<QRect> Renderer::bars(QSize view) const {
  const auto [smallest, largest] = shownBins(view.width());
  if (smallest.empty() || view.height() <= 0) return {};
  const std::size_t count = smallest.size();
  const double columnsPerBin = static_cast<double>(view.width()) / static_cast<double>(count);
  // A bin has the columns whose middles lie in it.
  const auto firstColumn = [&](std::size_t bin) {
    return static_cast<int>(std::ceil(static_cast<double>(bin) * columnsPerBin - 0.5));
  };
  std::vector<QRect> bars;
  bars.reserve(count);
  for (std::size_t bin = 0; bin < count; ++bin) {
    const std::size_t next = std::min(bin + 1, count - 1);
    const int left = firstColumn(bin), right = firstColumn(bin + 1);
    const auto [top, bottom] = rowsBetween(std::min(smallest[bin], largest[next]),
                                           std::max(largest[bin], smallest[next]), view.height());
    if (left < right) bars.emplace_back(left, top, right - left, bottom - top + 1);
  }
  return bars;
}

/// Line by line, which keeps to the order of the memory.
QImage Renderer::picture(QSize view, QImage earlier) const {
  const std::vector<QRect> bars = this->bars(view);
  if (bars.empty()) return {};
  QImage picture =
      earlier.size() == view ? std::move(earlier) : QImage(view, QImage::Format_ARGB32_Premultiplied);
  const auto width = static_cast<std::size_t>(view.width());
  std::vector<int> tops(width), bottoms(width, -1);
  for (const QRect& bar : bars) {
    std::fill_n(tops.begin() + bar.left(), bar.width(), bar.top());
    std::fill_n(bottoms.begin() + bar.left(), bar.width(), bar.bottom());
  }
  const auto [red, green, blue, opacity] = constants.color;
  const QRgb color = qPremultiply(QColor::fromRgbF(red, green, blue, opacity).rgba());
  for (int y = 0; y < view.height(); ++y)
    fillLine(reinterpret_cast<QRgb*>(picture.scanLine(y)), y, tops, bottoms, color);
  return picture;
}

}  // namespace waveform
