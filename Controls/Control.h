#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <functional>

#include "Controls/ClosedRange.h"
#include "Controls/ControlGeometry.h"

namespace controls {

/// Turns a pointer's gesture over a rectangle into a value. Knows no widget: a view feeds it the locations.
class Control {
 public:
  ControlGeometry geometry = TwoDimensionalDrag{};
  float value = 0;  ///< the owner may set it at any time, also from within `onChanged`
  ClosedRange<float> range{0, 1};
  QRectF rect;
  QSizeF padding{0, 0};
  std::function<void()> onStarted = [] {};
  std::function<void(float)> onChanged = [](float) {};
  std::function<void()> onEnded = [] {};

  /// The pointer went down or moved, in the coordinates of `rect`. A location of exactly (0, 0) stands for
  /// none.
  void moveTo(QPointF location);

  /// The pointer went up. Without a gesture nothing happens.
  void end();

  bool hasStarted() const { return hasStarted_; }
  QPointF touchLocation() const { return touchLocation_; }

  /// Where the value stands in the range, 0 to 1; 0 in a range without length.
  double normal() const;

 private:
  float valueAt(double normal) const;
  void follow(QPointF from, QPointF to);

  bool hasStarted_ = false;
  QPointF touchLocation_;
};

}  // namespace controls
