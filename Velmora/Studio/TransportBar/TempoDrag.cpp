#include "Velmora/Studio/TransportBar/TempoDrag.h"

#include <cmath>

namespace velmora {

std::optional<double> TempoDrag::moved(const QPointF& to, double currentBPM) {
  const QPointF translation = to - start_;
  if (!dragStartBPM_) {
    if (std::hypot(translation.x(), translation.y()) < minimumDistance) return std::nullopt;
    dragStartBPM_ = currentBPM;
  }
  return std::round(translation.y() * -0.125) + *dragStartBPM_;
}

}  // namespace velmora
