#include "Waveform/Waveform.h"

#include <QPainter>
#include <utility>

namespace waveform {

Waveform::Waveform(QWidget* parent) : QWidget(parent) {}

void Waveform::set(std::shared_ptr<const SampleBuffer> samples, std::int64_t start, std::int64_t length,
                   const Constants& constants) {
  renderer_.constants = constants;
  renderer_.set(std::move(samples), start, length);
  isStale_ = true;
  update();
}

/// In pixels of the device, each of which is either filled or not.
void Waveform::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const double scale = painter.deviceTransform().m11();
  const QSize pixels = (QSizeF(size()) * scale).toSize();
  if (std::exchange(isStale_, false) || picture_.size() != pixels)
    picture_ = renderer_.picture(pixels, std::move(picture_));
  painter.scale(1 / scale, 1 / scale);
  painter.drawImage(0, 0, picture_);
}

}  // namespace waveform
