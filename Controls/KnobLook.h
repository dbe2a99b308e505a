#pragma once

#include <QColor>

namespace controls {

/// The paint of a knob; lengths in points.
struct KnobLook {
  QColor backgroundColor = Qt::gray;
  QColor foregroundColor = Qt::black;
  QColor ringColor = Qt::transparent;
  double ringWidth = 1;
  QColor hoverColor{255, 255, 255, 12};  ///< laid over the face while the pointer is on it
  double disabledOpacity = 0.35;

  bool operator==(const KnobLook&) const = default;
};

}  // namespace controls
