#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"

#include <algorithm>
#include <cmath>

namespace velmora {

double ArrangementGeometry::clampedZoom(double zoom) { return std::clamp(zoom, lowestZoom, highestZoom); }

double ArrangementGeometry::pointsPerBeat(double zoom, double magnification) {
  const double product = zoom * magnification;
  if (!(product > lowestZoom)) return pointsPerBeatAtFullSize * lowestZoom;  // holds for no number, too
  return pointsPerBeatAtFullSize * std::min(product, highestZoom);
}

std::optional<int> ArrangementGeometry::row(double y, int trackCount) {
  const double row = std::floor(y / laneHeight);
  return row >= 0 && row < trackCount ? std::optional(static_cast<int>(row)) : std::nullopt;
}

QRectF ArrangementGeometry::clipFrame(double startBeat, double lengthBeats, int row, double pointsPerBeat) {
  constexpr double gap = 1.5;  // to the clip's own beat lines
  const double width = std::max(leastClipWidth, pointsPerBeat * lengthBeats - 2 * gap);
  return {pointsPerBeat * startBeat + gap, laneHeight * row + clipTop, width, clipHeight};
}

bool ArrangementGeometry::isResize(double x, double startBeat, double lengthBeats, double pointsPerBeat) {
  const double edgeDistance = std::abs(x - (startBeat + lengthBeats) * pointsPerBeat);
  const double third = lengthBeats * pointsPerBeat / 3;
  return edgeDistance < std::min(resizeEdge, third);
}

}  // namespace velmora
