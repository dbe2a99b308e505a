#include "Controls/Control.h"

#include <cmath>
#include <utility>

namespace controls {

double Control::normal() const {
  const double length = static_cast<double>(range.upper) - static_cast<double>(range.lower);
  return length > 0 ? (static_cast<double>(value) - static_cast<double>(range.lower)) / length : 0;
}

float Control::valueAt(double normal) const {
  const auto lower = static_cast<double>(range.lower);
  return static_cast<float>(lower + normal * (static_cast<double>(range.upper) - lower));
}

void Control::moveTo(QPointF location) {
  if (!std::exchange(hasStarted_, true)) onStarted();
  const QPointF last = std::exchange(touchLocation_, location);
  // The first event of a drag only sets the start point: a drag from a place to itself adds nothing.
  if (!location.isNull()) follow(last.isNull() ? location : last, location);
}

void Control::follow(QPointF from, QPointF to) {
  const double before = normal();
  const double after = normalAfter({from, to, rect, padding}, before, geometry);
  if (!std::isfinite(after) || after == before) return;
  value = valueAt(after);
  onChanged(value);
}

void Control::end() {
  if (!std::exchange(hasStarted_, false)) return;
  touchLocation_ = {};
  onEnded();
}

}  // namespace controls
