#pragma once

#include <QPointF>
#include <optional>

namespace velmora {

/// What taps and drags over a canvas do; points are in the view.
struct GestureResponder {
  virtual ~GestureResponder() = default;
  virtual void tapped(const QPointF& point) = 0;
  virtual void dragBegan(const QPointF& start) = 0;
  virtual void dragMoved(const QPointF& point) = 0;
  virtual void dragEnded() = 0;
  virtual void dragCancelled() = 0;
  virtual void pinched(double factor, const QPointF& center) = 0;  ///< the factor since the pinch began
  virtual void pinchEnded(const QPointF& center) = 0;
};

/// Tells the taps from the drags of one pointer: a drag begins at the drag distance.
class PointerGesture {
 public:
  explicit PointerGesture(GestureResponder& responder) : responder_(responder) {}

  void press(const QPointF& point);
  void move(const QPointF& point);
  void release(const QPointF& point);
  /// Forgets the press; what follows up to the next press does nothing.
  void cancel();

  bool isPressed() const { return start_.has_value(); }
  bool isDragging() const { return isDragging_; }

 private:
  GestureResponder& responder_;
  std::optional<QPointF> start_;
  bool isDragging_ = false;
};

}  // namespace velmora
