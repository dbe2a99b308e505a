#include "Velmora/Studio/Arrangement/LaneGround.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int barBeats = ArrangementGeometry::beatsPerBar;
constexpr int stripeDistance = 2 * barBeats;

/// One strip while it is drawn, from the back to the front.
struct Strip {
  QPainter& painter;
  const TimelineScale& scale;
  QRectF area;

  void fillBeats(double startBeat, double endBeat, const QColor& color) const {
    const double left = scale.x(startBeat);
    painter.fillRect(QRectF(left, 0, scale.x(endBeat) - left, area.height()) & area, color);
  }

  int firstBeat() const { return std::max(0, scale.wholeBeatAt(-1)); }
  int lastBeat() const { return scale.wholeBeatAt(area.right()); }

  /// Every second bar.
  void paintBarStripes() const {
    const int before = firstBeat() / stripeDistance * stripeDistance;
    for (int beat = before + barBeats; beat <= lastBeat(); beat += stripeDistance)
      fillBeats(beat, beat + barBeats, Theme::stripe);
  }

  void paintBeatLines() const {
    for (int beat = firstBeat(); beat <= lastBeat(); ++beat)
      painter.fillRect(QRectF(scale.x(beat), 0, 1, area.height()),
                       beat % barBeats == 0 ? Theme::line : Theme::lineWeak);
  }
};

}  // namespace

void LaneGround::prepare(const CanvasContent& content, int width, double pixelsPerPoint) {
  const Key key{content.loop, content.pointsPerBeat, content.scrollOffset.x(), width, pixelsPerPoint};
  if (key == key_) return;
  key_ = key;
  plain_ = makeStrip(Qt::transparent);
  selected_ = makeStrip(Theme::withOpacity(Qt::white, 0.035));
}

QPixmap LaneGround::makeStrip(const QColor& veil) const {
  const QSizeF size(key_.width, ArrangementGeometry::laneHeight);
  const auto pixels = [this](double points) {
    return static_cast<int>(std::ceil(points * key_.pixelsPerPoint));
  };
  QPixmap pixmap(pixels(size.width()), pixels(size.height()));
  pixmap.setDevicePixelRatio(key_.pixelsPerPoint);
  pixmap.fill(Theme::deep);
  QPainter painter(&pixmap);
  const TimelineScale scale{key_.pointsPerBeat, key_.scrollX, key_.pixelsPerPoint};
  const Strip strip{painter, scale, QRectF({}, size)};
  strip.paintBarStripes();
  strip.fillBeats(key_.loop.startBeat, key_.loop.endBeat, Theme::withOpacity(Theme::accent, 0.045));
  painter.fillRect(strip.area, veil);
  strip.paintBeatLines();
  return pixmap;
}

}  // namespace velmora
