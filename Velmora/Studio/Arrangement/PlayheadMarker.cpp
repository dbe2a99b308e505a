#include "Velmora/Studio/Arrangement/PlayheadMarker.h"

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

/// One row of a smooth vertical line. Stretched to the line's length it costs far less than a smooth
/// rectangle, which the painter shares among threads row by row.
QImage smoothLine(double middle, int width, double scale) {
  const double left = (middle - lineWidth / 2) * scale, right = (middle + lineWidth / 2) * scale;
  QImage row(qRound(width * scale), 1, QImage::Format_ARGB32_Premultiplied);
  for (int x = 0; x < row.width(); ++x) {
    const double covered = std::clamp(std::min(right, x + 1.0) - std::max(left, double(x)), 0.0, 1.0);
    row.setPixelColor(x, 0, Theme::withOpacity(Theme::accent, covered));
  }
  return row;
}

}  // namespace

PlayheadMarker::PlayheadMarker(const TransportController& transport, Style style, QWidget* parent)
    : QWidget(parent), transport_(transport), style_(style) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
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

void PlayheadMarker::run() { isPlaying_&& isVisible() ? frames_.start() : frames_.stop(); }

/// The widget covers whole pixels round the playhead; the rest of a pixel is drawn.
void PlayheadMarker::look() {
  const double x = transport_.playhead() * pointsPerBeat_ - scrollX_;
  const double left = std::floor(x - reach());
  const QRect place(static_cast<int>(std::clamp(left, -1000.0, 100000.0)), 0,
                    static_cast<int>(std::ceil(2 * reach())) + 1, parentWidget()->height());
  if (std::exchange(x_, x) == x && place == geometry()) return;
  setGeometry(place);
  update();
}

void PlayheadMarker::paintEvent(QPaintEvent*) {
  const double middle = x_ - std::floor(x_ - reach());
  QPainter painter(this);
  painter.drawImage(rect(), smoothLine(middle, width(), devicePixelRatioF()));
  if (style_ == Style::line) return;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(middle, 0);
  const QRectF triangle(-PlayheadTriangle::width / 2, 0, PlayheadTriangle::width, PlayheadTriangle::height);
  painter.fillPath(PlayheadTriangle::path(triangle), Theme::accent);
}

void PlayheadMarker::showEvent(QShowEvent*) {
  run();
  look();
}

void PlayheadMarker::hideEvent(QHideEvent*) { frames_.stop(); }

}  // namespace velmora
