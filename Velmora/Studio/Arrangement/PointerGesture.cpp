#include "Velmora/Studio/Arrangement/PointerGesture.h"

#include <cmath>
#include <utility>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"

namespace velmora {

void PointerGesture::press(const QPointF& point) {
  cancel();
  start_ = point;
}

void PointerGesture::move(const QPointF& point) {
  if (!start_) return;
  const QPointF distance = point - *start_;
  if (!isDragging_) {
    if (std::hypot(distance.x(), distance.y()) < ArrangementGeometry::dragDistance) return;
    isDragging_ = true;
    responder_.dragBegan(*start_);
  }
  responder_.dragMoved(point);
}

void PointerGesture::release(const QPointF& point) {
  move(point);
  const auto start = std::exchange(start_, std::nullopt);
  if (std::exchange(isDragging_, false)) {
    responder_.dragEnded();
  } else if (start) {
    responder_.tapped(point);
  }
}

void PointerGesture::cancel() {
  start_.reset();
  if (std::exchange(isDragging_, false)) responder_.dragCancelled();
}

}  // namespace velmora
