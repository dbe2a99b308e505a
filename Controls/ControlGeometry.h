#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <variant>

#include "Controls/ClosedRange.h"

namespace controls {

// How a pointer turns a control. A sensitivity of 1 covers the whole range in one width or height; angular
// ranges are in degrees.
struct HorizontalDrag {
  double xSensitivity = 1;
};
struct VerticalDrag {
  double ySensitivity = 1;
};
struct TwoDimensionalDrag {
  double xSensitivity = 1;
  double ySensitivity = 1;
};
struct Angle {
  ClosedRange<double> angularRange{0, 360};
};
struct AngularDrag {
  ClosedRange<double> angularRange{0, 360};
};
struct HorizontalPoint {};
struct VerticalPoint {};

using ControlGeometry = std::variant<HorizontalDrag, VerticalDrag, TwoDimensionalDrag, Angle, AngularDrag,
                                     HorizontalPoint, VerticalPoint>;

/// A step of the pointer over a control, in points of the control's own coordinates.
struct PointerMove {
  QPointF from;
  QPointF to;
  QRectF rect;
  QSizeF padding{0, 0};  ///< left out at both sides of each axis
};

/// The angle of a point about a centre in radians, from 0 straight down, clockwise by the left to 2 pi. The
/// centre itself has none: the result is no number.
double polarAngle(QPointF point, QPointF center);

/// Where a control at `normal`, from 0 to 1 in its range, stands after the move; not a finite number if the
/// geometry says nothing there.
double normalAfter(const PointerMove& move, double normal, const ControlGeometry& geometry);

}  // namespace controls
