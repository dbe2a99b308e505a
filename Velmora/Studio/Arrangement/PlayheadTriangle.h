#pragma once

#include <QPainterPath>

namespace velmora {

/// The pointer at the top of the playhead: a triangle that looks down.
struct PlayheadTriangle {
  static constexpr double width = 10;
  static constexpr double height = 7;

  static QPainterPath path(const QRectF& rect) {
    QPainterPath path(rect.topLeft());
    path.lineTo(rect.topRight());
    path.lineTo(rect.center().x(), rect.bottom());
    path.closeSubpath();
    return path;
  }
};

}  // namespace velmora
