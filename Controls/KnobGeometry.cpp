#include "Controls/KnobGeometry.h"

#include <cmath>
#include <numbers>

namespace controls {

double KnobGeometry::pointerAngle(double normal) { return (normal * 1.6 + 0.2) * std::numbers::pi; }

QPointF KnobGeometry::pointerCenter(double normal) const {
  const double radius = 0.5 * 0.75 * frame.width();
  const double angle = pointerAngle(normal);
  return frame.center() + QPointF(-std::sin(angle), std::cos(angle)) * radius;
}

}  // namespace controls
