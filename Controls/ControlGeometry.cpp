#include "Controls/ControlGeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace controls {

namespace {

using std::numbers::pi;

/// The rule of each geometry for the unclamped position.
struct Rule {
  const PointerMove& move;
  double normal;

  double width() const { return move.rect.width() - 2 * move.padding.width(); }
  double height() const { return move.rect.height() - 2 * move.padding.height(); }
  double right(double sensitivity) const { return (move.to.x() - move.from.x()) * sensitivity / width(); }
  double up(double sensitivity) const { return -(move.to.y() - move.from.y()) * sensitivity / height(); }
  double angle(QPointF point) const { return polarAngle(point, move.rect.center()); }

  double operator()(const HorizontalDrag& drag) const { return normal + right(drag.xSensitivity); }
  double operator()(const VerticalDrag& drag) const { return normal + up(drag.ySensitivity); }
  double operator()(const TwoDimensionalDrag& drag) const {
    return normal + right(drag.xSensitivity) + up(drag.ySensitivity);
  }
  double operator()(const Angle& dial) const {
    return (angle(move.to) * 180 / pi - dial.angularRange.lower) / dial.angularRange.length();
  }
  double operator()(const AngularDrag&) const {
    return normal + (angle(move.to) - angle(move.from)) / (2 * pi);
  }
  double operator()(const HorizontalPoint&) const { return (move.to.x() - move.padding.width()) / width(); }
  double operator()(const VerticalPoint&) const {
    return 1 - (move.to.y() - move.padding.height()) / height();
  }
};

}  // namespace

double polarAngle(QPointF point, QPointF center) {
  const QPointF offset = point - center;
  const double side = offset.x() < 0 ? pi / 2 : 3 * pi / 2;
  return std::atan(offset.y() / offset.x()) + side;
}

double normalAfter(const PointerMove& move, double normal, const ControlGeometry& geometry) {
  return std::clamp(std::visit(Rule{move, normal}, geometry), 0.0, 1.0);
}

}  // namespace controls
