#pragma once

#include <cmath>

namespace velmora {

/// Where beats lie in a view that has scrolled, on whole pixels of its device, so that every line is sharp.
struct TimelineScale {
  double pointsPerBeat = 48;
  double scrollX = 0;
  double pixelsPerPoint = 1;

  double snapped(double points) const { return std::round(points * pixelsPerPoint) / pixelsPerPoint; }
  double x(double beat) const { return snapped(pointsPerBeat * beat - scrollX); }
  double beatAt(double x) const { return (x + scrollX) / pointsPerBeat; }
  int wholeBeatAt(double x) const { return static_cast<int>(std::floor(beatAt(x))); }
};

}  // namespace velmora
