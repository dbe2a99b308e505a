#include "Velmora/Studio/Arrangement/PlayheadMarker.h"

#include <QEvent>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Studio/Arrangement/PlayheadTriangle.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr double lineWidth = 1.5;

/// A line smooth to both sides, without the painter's own smoothing: that shares long shapes among threads,
/// row by row.
void drawLine(QImage& image, double middle, double scale) {
  const double left = (middle - lineWidth / 2) * scale, right = (middle + lineWidth / 2) * scale;
  for (int x = 0; x < image.width(); ++x) {
    const double covered = std::clamp(std::min(right, x + 1.0) - std::max(left, double(x)), 0.0, 1.0);
    const QColor color = Theme::withOpacity(Theme::accent, covered);
    for (int y = 0; y < image.height(); ++y) image.setPixelColor(x, y, color);
  }
}

void drawTriangle(QImage& image, double middle) {
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF triangle(middle - PlayheadTriangle::width / 2, 0, PlayheadTriangle::width,
                        PlayheadTriangle::height);
  painter.fillPath(PlayheadTriangle::path(triangle), Theme::accent);
}

}  // namespace

PlayheadMarker::PlayheadMarker(const TransportController& transport, Style style, QWidget& host)
    : transport_(transport), style_(style), host_(host) {
  host.installEventFilter(this);
}

double PlayheadMarker::reach() const {
  return style_ == Style::line ? lineWidth / 2 : PlayheadTriangle::width / 2;
}

void PlayheadMarker::follow(bool isPlaying) {
  isPlaying_ = isPlaying;
  run();
  look();
}

void PlayheadMarker::place(double pointsPerBeat, double scrollX) {
  pointsPerBeat_ = pointsPerBeat;
  scrollX_ = scrollX;
  look();
}

void PlayheadMarker::run() { isPlaying_&& host_.isVisible() ? frames_.start() : frames_.stop(); }

/// Whole pixels round the playhead.
QRect PlayheadMarker::frame() const {
  return {static_cast<int>(std::floor(x_ - reach())), 0, static_cast<int>(std::ceil(2 * reach())) + 1,
          host_.height()};
}

void PlayheadMarker::look() {
  const double exact = std::clamp(transport_.playhead() * pointsPerBeat_ - scrollX_, -1000.0, 100000.0);
  const double x = std::round(exact * phases) / phases;
  if (x == x_) return;
  const QRect before = frame();
  x_ = x;
  if (before.intersects(frame())) return host_.update(before | frame());
  host_.update(before);
  host_.update(frame());
}

void PlayheadMarker::paint(QPainter& painter, const QRect& dirty) {
  const QRect place = frame();
  if (!place.intersects(dirty)) return;
  painter.drawPixmap(place, stamp(x_ - place.x(), static_cast<int>((x_ - std::floor(x_)) * phases)));
}

/// A line is one row of pixels, to be stretched.
const QPixmap& PlayheadMarker::stamp(double middle, int phase) {
  QPixmap& stamp = stamps_[static_cast<std::size_t>(phase)];
  const double scale = host_.devicePixelRatioF();
  const QSize pixels =
      QSizeF(frame().width() * scale, style_ == Style::line ? 1 : frame().height() * scale).toSize();
  if (stamp.size() == pixels) return stamp;
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  drawLine(image, middle, scale);
  if (style_ == Style::rulerMarker) drawTriangle(image, middle);
  return stamp = QPixmap::fromImage(std::move(image));
}

bool PlayheadMarker::eventFilter(QObject* host, QEvent* event) {
  if (event->type() == QEvent::Show || event->type() == QEvent::Hide) {
    run();
    look();
  }
  return QObject::eventFilter(host, event);
}

}  // namespace velmora
