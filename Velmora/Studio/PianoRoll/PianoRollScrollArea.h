#pragma once

#include <QPointF>
#include <QRectF>
#include <QScrollArea>

#include "Velmora/Studio/PianoRoll/PianoRollCanvasView.h"

namespace velmora {

/// The window onto a piano roll: scrolls and zooms its surface.
class PianoRollScrollArea final : public QScrollArea {
 public:
  /// Takes the canvas over.
  explicit PianoRollScrollArea(PianoRollCanvasView* canvas, QWidget* parent = nullptr);

  /// The beat at `x` of the canvas stays where it is.
  void setPointsPerBeat(double pointsPerBeat, double x);
  /// The first beat that shows stays where it is.
  void setPointsPerBeat(double pointsPerBeat);

  QSize sizeHint() const override { return {540, 240}; }
  QSize minimumSizeHint() const override { return {180, 90}; }

 protected:
  void wheelEvent(QWheelEvent* event) override;
  /// Without the base's scroll to the middle of the canvas when the focus goes from it.
  bool focusNextPrevChild(bool next) override { return QAbstractScrollArea::focusNextPrevChild(next); }

 private:
  void pan(QPointF points);
  void reveal(const QRectF& area);

  PianoRollCanvasView& canvas_;
};

}  // namespace velmora
