#include "Velmora/Studio/StepGrid/StepColumnLabels.h"

#include <QPainter>

#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr int stepsPerBeat = 4;

}  // namespace

void StepColumnLabels::setGrid(const StepGridGeometry& grid) {
  if (grid == grid_) return;
  grid_ = grid;
  update();
}

void StepColumnLabels::setOffset(int offset) {
  if (offset == offset_) return;
  offset_ = offset;
  update();
}

void StepColumnLabels::setCellsLeft(int cellsLeft) {
  cellsLeft_ = cellsLeft;
  update();
}

void StepColumnLabels::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(Theme::font(Theme::Text::capitals));
  painter.setPen(Theme::secondary);
  painter.drawText(QRect(0, 0, cellsLeft_, height()), Qt::AlignVCenter, "SOUND");
  painter.setFont(Theme::font(Theme::Text::control));
  painter.setClipRect(cellsLeft_, 0, width() - cellsLeft_, height());
  for (int column = 0; column < grid_.stepCount; ++column) paintColumn(painter, column);
}

void StepColumnLabels::paintColumn(QPainter& painter, int column) const {
  const QRectF place(cellsLeft_ - offset_ + grid_.cellWidth * column, 0, grid_.cellWidth, height());
  const bool isBeat = column % stepsPerBeat == 0;
  painter.setPen(isBeat ? Theme::text : Theme::secondary);
  painter.drawText(place, Qt::AlignCenter, isBeat ? QString::number(column / stepsPerBeat + 1) : "·");
}

}  // namespace velmora
