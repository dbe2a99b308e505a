#pragma once

#include <QWidget>
#include <optional>
#include <vector>

#include "Velmora/Studio/Arrangement/CanvasContent.h"
#include "Velmora/Studio/Arrangement/CanvasResponder.h"
#include "Velmora/Studio/Arrangement/ClipPainter.h"
#include "Velmora/Studio/Arrangement/LaneGround.h"
#include "Velmora/Studio/Arrangement/LaneIndex.h"
#include "Velmora/Studio/Arrangement/PlayheadMarker.h"

class QTouchEvent;

namespace velmora {

/// The lanes with their clips, drawn by hand in one pass. It draws again only what differs from what it
/// shows, and passes what the user does on.
class ArrangementCanvas final : public QWidget {
 public:
  /// Responder and transport outlive it.
  ArrangementCanvas(CanvasResponder& responder, const TransportController& transport,
                    QWidget* parent = nullptr);

  void show(CanvasContent content);
  using QWidget::show;

  const CanvasContent& content() const { return content_; }
  CanvasResponder& responder() const { return responder_; }
  PlayheadMarker& playhead() { return playhead_; }
  /// Where a clip lies in the widget.
  QRectF frameOf(const ClipPlace& place) const;
  std::optional<ClipPlace> selectedClip() const;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  bool touch(const QTouchEvent& event);
  bool pinch(const QTouchEvent& event);
  const LaneIndex& indexOf(int row);
  void keepIndexes(const LaneData& next);
  void tellSelection();

  CanvasResponder& responder_;
  CanvasContent content_;
  std::vector<std::optional<LaneIndex>> indexes_;  // by row, made when first needed
  LaneGround ground_;
  ClipPainter clipPainter_;
  PlayheadMarker playhead_;
  PointerGesture gesture_;
  std::optional<double> pinchSpan_;  // of the two fingers at first
};

}  // namespace velmora
