#include <QImage>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

#include "Waveform/Peaks.h"
#include "Waveform/Waveform.h"
#include "benchmarks/Goals.h"
#include "benchmarks/Views.h"
#include "benchmarks/support/Measure.h"

namespace velmora::benchmarks {

namespace {

constexpr std::size_t tenMinutes = 600 * 48000;
constexpr std::size_t binCount = 2048;
constexpr int overviews = 7;
constexpr int drawings = 300;
constexpr QSize drawnSize(1600, 320);
constexpr int drawnScale = 2;

/// A tone that swells and fades, so that no bin is like the next.
AudioSample tone() {
  AudioSample sample{std::vector<float>(tenMinutes), 48000};
  for (std::size_t frame = 0; frame < tenMinutes; ++frame) {
    const auto time = static_cast<float>(frame) / 48000;
    sample.samples[frame] = std::sin(0.3F * time) * std::sin(2700 * time);
  }
  return sample;
}

template <class Body>
Amount medianTime(int count, const Body& body) {
  std::vector<double> times;
  while (times.size() < static_cast<std::size_t>(count)) times.push_back(elapsed(CLOCK_MONOTONIC, body));
  return Amount::seconds(median(std::move(times)));
}

/// Into the pixels of a window that was there before, as the desktop has it.
Amount drawingTime(const std::shared_ptr<const waveform::SampleBuffer>& buffer) {
  waveform::Waveform view;
  view.resize(drawnSize);
  QImage window(drawnSize * drawnScale, QImage::Format_RGB32);
  window.setDevicePixelRatio(drawnScale);
  window.fill(Qt::black);
  const auto length = static_cast<std::int64_t>(buffer->samples.size());
  return medianTime(drawings, [&] {
    view.set(buffer, 0, length, {{1, 0.6F, 0.4F, 1}});  // another drawing, of the same size
    view.render(&window, {}, {}, {});
  });
}

}  // namespace

void measureWaveform(Report& report) {
  offscreenApplication();
  const AudioSample sample = tone();
  std::shared_ptr<const waveform::SampleBuffer> buffer;
  const Amount overview = medianTime(overviews, [&] {
    buffer = std::make_shared<const waveform::SampleBuffer>(
        waveform::SampleBuffer{waveform::peaks(sample, binCount)});
  });
  addFigure(report, "overview of 10 minutes", overview, 0.150);
  addFigure(report, "a waveform of 1600 x 320 at scale 2", drawingTime(buffer), 0.001);
}

}  // namespace velmora::benchmarks
