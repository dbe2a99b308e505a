#include "Velmora/Studio/AudioEditor/AudioWaveformView.h"

#include <QFuture>
#include <QPainter>
#include <QtConcurrentRun>
#include <cstddef>
#include <utility>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Waveform/Peaks.h"

namespace velmora {

namespace {

constexpr std::size_t binCount = 2048;
constexpr double radius = 8;
constexpr int inset = 10;
constexpr int progressWidth = 160;
constexpr int progressHeight = 6;
constexpr int progressGap = 8;

using Buffer = std::shared_ptr<const waveform::SampleBuffer>;

waveform::Constants constantsOf(const QColor& color) {
  return {{color.redF(), color.greenF(), color.blueF(), color.alphaF()}};
}

}  // namespace

AudioWaveformView::AudioWaveformView(QWidget* parent)
    : QWidget(parent), progressText_("Drawing waveform…", Theme::Text::caption, Theme::secondary, this) {
  waveform_.setObjectName("audio.waveform");
  waveform_.setAccessibleName("Audio waveform");
  Spoken::attach(waveform_, {.role = QAccessible::Graphic});
  progressText_.setAlignment(Qt::AlignCenter);
  progress_.setRange(0, 0);
  progress_.setTextVisible(false);
  progress_.setAccessibleName(progressText_.text());
  worker_.setMaxThreadCount(1);
  present();
}

void AudioWaveformView::show(std::shared_ptr<const AudioSample> sample, const QColor& color) {
  if (sample == sample_ && color == color_) return;
  color_ = color;
  if (sample != sample_) {
    sample_ = std::move(sample);
    buffer_.reset();
    worker_.clear();
    if (sample_) startOverview();
  }
  present();
}

void AudioWaveformView::startOverview() {
  const auto make = [sample = sample_]() -> Buffer {
    return std::make_shared<const waveform::SampleBuffer>(
        waveform::SampleBuffer{waveform::peaks(*sample, binCount)});
  };
  QtConcurrent::run(&worker_, make).then(this, [this, sample = sample_](const Buffer& made) {
    if (sample != sample_) return;  // another one is shown by now
    buffer_ = made;
    present();
  });
}

void AudioWaveformView::present() {
  const auto length = buffer_ ? static_cast<std::int64_t>(buffer_->samples.size()) : 0;
  waveform_.set(buffer_, 0, length, constantsOf(color_));
  waveform_.setVisible(buffer_ != nullptr);
  progressText_.setVisible(!buffer_);
  progress_.setVisible(!buffer_);
}

void AudioWaveformView::resizeEvent(QResizeEvent*) {
  waveform_.setGeometry(rect().adjusted(inset, inset, -inset, -inset));
  const int lineHeight = progressText_.sizeHint().height();
  const int top = (height() - lineHeight - progressGap - progressHeight) / 2;
  progressText_.setGeometry(0, top, width(), lineHeight);
  progress_.setGeometry((width() - progressWidth) / 2, top + lineHeight + progressGap, progressWidth,
                        progressHeight);
}

void AudioWaveformView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPanel(painter, rect(), radius, Theme::deep, Theme::lineWeak);
}

}  // namespace velmora
