#pragma once

#include <QColor>
#include <QProgressBar>
#include <QThreadPool>
#include <QWidget>
#include <memory>

#include "Velmora/Theme/TextLabel.h"
#include "VelmoraCore/Render/AudioSample.h"
#include "Waveform/Waveform.h"

namespace velmora {

/// A decoded sample as a waveform in its track's colour. The overview of another sample is made on a worker;
/// until it is there, a line tells so.
class AudioWaveformView final : public QWidget {
 public:
  explicit AudioWaveformView(QWidget* parent = nullptr);

  void show(std::shared_ptr<const AudioSample> sample, const QColor& color);
  using QWidget::show;

  const std::shared_ptr<const AudioSample>& sample() const { return sample_; }
  const QColor& color() const { return color_; }
  /// Null until it is made.
  const std::shared_ptr<const waveform::SampleBuffer>& buffer() const { return buffer_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void startOverview();
  void present();

  std::shared_ptr<const AudioSample> sample_;
  QColor color_;
  std::shared_ptr<const waveform::SampleBuffer> buffer_;
  waveform::Waveform waveform_{this};
  TextLabel progressText_;
  QProgressBar progress_{this};
  QThreadPool worker_;
};

}  // namespace velmora
