// What the step grid shows.

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Velmora/Studio/StepGrid/StepGridCanvas.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr QSizeF bubbleSize{40, 26};
constexpr double bubbleGap = 2;

StepCellPainter::Beat beatOf(int column) {
  return column & 4 ? StepCellPainter::Beat::dark : StepCellPainter::Beat::light;
}

}  // namespace

void StepGridCanvas::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  cellPainter_.begin(painter, page_.color);
  paintCells(event->rect());
  if (press_ && !draggedVelocity()) paintPress(painter);
  if (lead_.showsCursor() && hasFocus() && isShown(cursor_)) paintCursor(painter);
  if (draggedVelocity()) paintDraggedVelocity(painter);
}

void StepGridCanvas::paintCells(const QRectF& dirty) {
  for (const StepPlace place : grid().places()) {
    if (!grid().slot(place).intersects(dirty)) continue;
    std::optional<int> velocity = velocities_[indexOf(place)];
    if (press_ && press_->place == place && draggedVelocity()) velocity = draggedVelocity();
    cellPainter_.paint(grid().cell(place), beatOf(place.column), velocity);
  }
}

void StepGridCanvas::paintPress(QPainter& painter) const {
  paintPanel(painter, grid().cell(press_->place), 5, Theme::lineWeak);
}

void StepGridCanvas::paintCursor(QPainter& painter) const {
  paintFocusRing(painter, grid().cell(cursor_).adjusted(-2, -2, 2, 2), 7);
}

/// Above the cell, or under it where there is no room.
QRectF StepGridCanvas::bubble() const {
  const QRectF cell = grid().cell(press_->place);
  const QRectF room = visibleRegion().boundingRect();
  QRectF rect(QPointF(), bubbleSize);
  rect.moveCenter({cell.center().x(), cell.top() - bubbleGap - bubbleSize.height() / 2});
  if (rect.top() < room.top()) rect.moveTop(cell.bottom() + bubbleGap);
  return rect;
}

void StepGridCanvas::paintDraggedVelocity(QPainter& painter) const {
  const QRectF rect = bubble();
  paintPanel(painter, rect, 8, Theme::raised, Theme::accent);
  painter.setFont(Theme::font(Theme::Text::control));
  painter.setPen(Theme::text);
  painter.drawText(rect, Qt::AlignCenter, QString::number(*draggedVelocity()));
}

}  // namespace velmora
