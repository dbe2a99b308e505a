#include "Velmora/Studio/Arrangement/AutoScroll.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr double widestZone = 12;  // inside the view
constexpr double fastest = 24;     // points a frame

/// Faster the further out.
double step(double position, double length) {
  const double zone = std::min(widestZone, length / 8);
  const double before = std::max(0.0, zone - position);
  const double after = std::max(0.0, position - (length - zone));
  return std::clamp((after - before) / 2, -fastest, fastest);
}

}  // namespace

QPointF autoScrollStep(const QPointF& pointer, const QSizeF& viewport) {
  return {step(pointer.x(), viewport.width()), step(pointer.y(), viewport.height())};
}

}  // namespace velmora
