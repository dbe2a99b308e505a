#pragma once

#include <QPointF>
#include <optional>

namespace velmora {

/// A press on the tempo that is a tap until it has moved far enough, and from then on a drag: 8 points up
/// make one BPM more, counted from the tempo at the drag's first change.
class TempoDrag {
 public:
  static constexpr double minimumDistance = 4;

  explicit TempoDrag(const QPointF& start) : start_(start) {}

  bool isDragging() const { return dragStartBPM_.has_value(); }

  /// The tempo to set; empty while the press is still a tap.
  std::optional<double> moved(const QPointF& to, double currentBPM);

 private:
  QPointF start_;
  std::optional<double> dragStartBPM_;
};

}  // namespace velmora
