#include "Velmora/Studio/Arrangement/TimelineViewport.h"

#include <algorithm>
#include <cmath>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"

namespace velmora {

namespace {

constexpr double pageLead = 24;  // seen ahead of the beat that a page begins with

/// The offset of a view of the given length that shows as much as possible of a stretch.
double revealing(double offset, double length, double start, double end) {
  return std::min(std::max(offset, end - length), start);
}

}  // namespace

double TimelineViewport::pointsPerBeat() const {
  return ArrangementGeometry::pointsPerBeat(zoom, magnification);
}

QSizeF TimelineViewport::contentSize() const {
  const double beats = timelineBeats + ArrangementGeometry::spareBeats;
  return QSizeF(pointsPerBeat() * beats, ArrangementGeometry::laneHeight * trackCount)
      .expandedTo(viewportSize);
}

void TimelineViewport::scrollTo(const QPointF& offset) {
  const QSizeF content = contentSize();
  const double headersHeight = ArrangementGeometry::laneHeight * trackCount + footHeight;
  const double lowest = std::max(content.height(), headersHeight) - viewportSize.height();
  scrollOffset = {std::round(std::clamp(offset.x(), 0.0, content.width() - viewportSize.width())),
                  std::round(std::clamp(offset.y(), 0.0, lowest))};
}

void TimelineViewport::reveal(const QRectF& content) {
  scrollTo({revealing(scrollOffset.x(), viewportSize.width(), content.left(), content.right()),
            revealing(scrollOffset.y(), viewportSize.height(), content.top(), content.bottom())});
}

bool TimelineViewport::showsBeat(double beat) const {
  const double x = beat * pointsPerBeat() - scrollOffset.x();
  return x >= 0 && x < viewportSize.width();
}

void TimelineViewport::turnPageTo(double beat) {
  scrollTo({beat * pointsPerBeat() - pageLead, scrollOffset.y()});
}

template <class Change>
void TimelineViewport::keepingBeatAt(double anchorX, const Change& change) {
  const double beat = (scrollOffset.x() + anchorX) / pointsPerBeat();
  change();
  scrollTo({beat * pointsPerBeat() - anchorX, scrollOffset.y()});
}

void TimelineViewport::zoomTo(double newZoom, double anchorX) {
  keepingBeatAt(anchorX, [&] { zoom = ArrangementGeometry::clampedZoom(newZoom); });
}

void TimelineViewport::magnify(double factor, double anchorX) {
  keepingBeatAt(anchorX, [&] { magnification = factor; });
}

void TimelineViewport::endMagnification(double anchorX) {
  keepingBeatAt(anchorX, [&] {
    zoom = ArrangementGeometry::clampedZoom(zoom * magnification);
    magnification = 1;
  });
}

}  // namespace velmora
