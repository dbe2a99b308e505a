#pragma once

#include <QPainter>
#include <functional>

#include "Velmora/Studio/Arrangement/CanvasContent.h"
#include "Velmora/Studio/Arrangement/ClipPainter.h"
#include "Velmora/Studio/Arrangement/LaneGround.h"
#include "Velmora/Studio/Arrangement/LaneIndex.h"
#include "Velmora/Studio/Arrangement/TimelineScale.h"

namespace velmora {

/// Draws the lanes in one pass from the back to the front, and of them only what lies in an area of the view.
class CanvasPainter {
 public:
  using IndexOfRow = std::function<const LaneIndex&(int row)>;

  CanvasPainter(QPainter& painter, const CanvasContent& content, const QRectF& area);

  void paintGround(const LaneGround& ground);
  void paintClips(ClipPainter& clipPainter, const IndexOfRow& indexOfRow);

 private:
  void paintLoopLine(double beat);
  double top(int row) const;
  int firstRow() const;
  int lastRow() const;

  QPainter& painter_;
  const CanvasContent& content_;
  const QRectF area_;
  const TimelineScale scale_;
};

}  // namespace velmora
