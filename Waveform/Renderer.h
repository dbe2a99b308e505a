#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "Waveform/SampleBuffer.h"

namespace waveform {

/// What a drawing needs beyond the samples.
struct Constants {
  std::array<float, 4> color{};  ///< red, green, blue and opacity, 0 to 1

  bool operator==(const Constants&) const = default;
};

/// Draws a waveform in software, from a pyramid of the smallest and largest samples in ever wider bins.
///
/// The pyramid is built once a buffer and takes four times its memory. A drawing reads about one bin a pixel
/// column, whatever the zoom.
class Renderer {
 public:
  /// One entry a level, the finest first.
  using Buffers = std::vector<std::vector<float>>;

  Constants constants{};

  /// Shows `length` samples from `start` on. Another buffer than before, which may be null, has its pyramid
  /// built.
  void set(std::shared_ptr<const SampleBuffer> samples, std::int64_t start, std::int64_t length);

  const std::shared_ptr<const SampleBuffer>& samples() const { return samples_; }
  std::int64_t start() const { return start_; }
  std::int64_t length() const { return length_; }
  const Buffers& minBuffers() const { return minBuffers_; }
  const Buffers& maxBuffers() const { return maxBuffers_; }

  /// The level for a view that would be so many pixels wide if it showed the whole buffer; empty without
  /// levels.
  std::optional<std::size_t> level(double virtualWidth) const;

  /// The pixels to fill in a view of this many pixels: a bar for each bin, side by side, from its largest
  /// sample down to its smallest and on to the next bin, at least a pixel high. The middle of the view is 0,
  /// its edges are 1 and -1.
  std::vector<QRect> bars(QSize view) const;

  /// The bars in their colour, all else clear; null where there are none. Keeps the memory of an earlier
  /// picture of the same size.
  QImage picture(QSize view, QImage earlier = {}) const;

 private:
  struct Bins {
    std::span<const float> smallest;
    std::span<const float> largest;
  };
  Bins shownBins(int width) const;
  void build();

  Buffers minBuffers_;
  Buffers maxBuffers_;
  std::shared_ptr<const SampleBuffer> samples_;
  std::int64_t start_ = 0;
  std::int64_t length_ = 0;
};

}  // namespace waveform
