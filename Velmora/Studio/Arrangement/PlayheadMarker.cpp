#include "Velmora/Studio/Arrangement/PlayheadMarker.h"

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
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(x_ - std::floor(x_ - reach()), 0);
  painter.fillRect(QRectF(-lineWidth / 2, 0, lineWidth, height()), Theme::accent);
  if (style_ == Style::line) return;
  const QRectF triangle(-PlayheadTriangle::width / 2, 0, PlayheadTriangle::width, PlayheadTriangle::height);
  painter.fillPath(PlayheadTriangle::path(triangle), Theme::accent);
}

void PlayheadMarker::showEvent(QShowEvent*) {
  run();
  look();
}

void PlayheadMarker::hideEvent(QHideEvent*) { frames_.stop(); }

}  // namespace velmora
