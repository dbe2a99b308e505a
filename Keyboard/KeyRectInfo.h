#pragma once

#include <QPointF>
#include <QRectF>

#include "Tonic/Pitch.h"

namespace keyboard {

/// One key's place in the keyboard's coordinates.
struct KeyRectInfo {
  QRectF rect;
  tonic::Pitch pitch;
  int zIndex = 0;  ///< higher on top

  /// The left and top edges belong to the key, the right and bottom ones to its neighbours.
  bool contains(QPointF location) const {
    return rect.left() <= location.x() && location.x() < rect.right() && rect.top() <= location.y() &&
           location.y() < rect.bottom();
  }

  /// From (0, 0) at the key's top left to (1, 1) at its bottom right.
  QPointF normalized(QPointF location) const {
    return {(location.x() - rect.left()) / rect.width(), (location.y() - rect.top()) / rect.height()};
  }
};

}  // namespace keyboard
