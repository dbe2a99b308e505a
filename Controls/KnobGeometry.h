#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace controls {

/// Where a knob's pointer lies: it travels 288 degrees clockwise from the lower left, with the gap at the
/// bottom.
struct KnobGeometry {
  QRectF frame;

  /// Radians clockwise from straight down, for a position of 0 to 1.
  static double pointerAngle(double normal);

  QPointF pointerCenter(double normal) const;
  QSizeF pointerSize() const { return {frame.width() / 20, frame.height() / 4}; }
};

}  // namespace controls
