#pragma once

#include <QNativeGestureEvent>
#include <QTimer>
#include <QWheelEvent>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/Arrangement/ArrangementState.h"
#include "Velmora/Studio/Arrangement/CanvasResponder.h"
#include "Velmora/Studio/Arrangement/ClipKeys.h"

namespace velmora {

/// What the user's hands do to the arrangement. Only a tap, the release of a drag and keys reach the
/// document.
class ArrangementGestures final : public QObject, public CanvasResponder {
 public:
  ArrangementGestures(AppModel& model, ArrangementState& state);

  void tapped(const QPointF& point) override;
  void dragBegan(const QPointF& start) override;
  void dragMoved(const QPointF& point) override;
  void dragEnded() override;
  void dragCancelled() override;
  void pinched(double factor, const QPointF& center) override;
  void pinchEnded(const QPointF& center) override;

  Qt::CursorShape cursorAt(const QPointF& point) override;
  bool keyPressed(const QKeyEvent& event) override { return keys_.press(event); }
  void resized(const QSizeF& size) override;

  void selectClip(const UUID& clipID) override { model_.selectClip(clipID); }
  void deleteClip(const UUID& clipID) override;
  QString trackName(const UUID& trackID) override;

  bool isDragging() const { return dragKind_ != DragKind::none; }

  /// By the factor, about the playhead if it is in view.
  void zoomBy(double factor);
  // Positions are in the canvas.
  void wheel(const QWheelEvent& event, const QPointF& position);
  bool nativeGesture(const QNativeGestureEvent& event, const QPointF& position);

 private:
  enum class DragKind : std::uint8_t { none, clip, scroll };

  const ClipBox* clipAt(const QPointF& content);
  void dragClip();
  void autoScroll();
  void stopDrag();

  AppModel& model_;
  ArrangementState& state_;
  ClipKeys keys_;
  DragKind dragKind_ = DragKind::none;
  QPointF grabbed_;      // the point of the content that a scrolling drag keeps under the pointer
  QPointF dragPointer_;  // in the view
  QTimer autoScroll_;
};

}  // namespace velmora
