#include "Velmora/Studio/StepGrid/StepGridGeometry.h"

#include <algorithm>
#include <cmath>

namespace velmora {

int StepPages::count() const { return std::max(1, (stepCount + stepsPerPage - 1) / stepsPerPage); }
int StepPages::clamped(int page) const { return std::clamp(page, 0, count() - 1); }
int StepPages::visibleCount(int page) const {
  return std::clamp(stepCount - firstStep(page), 0, stepsPerPage);
}

StepGridGeometry StepGridGeometry::fitting(double viewportWidth, int stepCount) {
  return {stepCount, std::max(cellSize, viewportWidth / std::max(stepCount, 1))};
}

QSize StepGridGeometry::size() const { return QSizeF(cellWidth * stepCount, cellHeight * rowCount).toSize(); }

QRectF StepGridGeometry::slot(StepPlace place) const {
  return {cellWidth * place.column, cellHeight * place.row, cellWidth, cellHeight};
}

QRectF StepGridGeometry::cell(StepPlace place) const { return slot(place).adjusted(3, 4, -3, -4); }

QRectF StepGridGeometry::column(int column) const {
  return {cellWidth * column, 0, cellWidth, cellHeight * rowCount};
}

std::optional<StepPlace> StepGridGeometry::placeAt(QPointF point) const {
  const StepPlace place{static_cast<int>(std::floor(point.y() / cellHeight)),
                        static_cast<int>(std::floor(point.x() / cellWidth))};
  const bool isInside =
      place.row >= 0 && place.row < rowCount && place.column >= 0 && place.column < stepCount;
  return isInside ? std::optional(place) : std::nullopt;
}

std::vector<StepPlace> StepGridGeometry::places() const {
  std::vector<StepPlace> places;
  places.reserve(cellCount);
  for (int i = 0; i < rowCount * stepCount; ++i) places.push_back({i / stepCount, i % stepCount});
  return places;
}

std::size_t StepGridGeometry::indexOnFullPage(StepPlace place) {
  const int index = place.row * StepPages::stepsPerPage + place.column;
  return static_cast<std::size_t>(index);
}

QRectF StepGridGeometry::velocityBar(const QRectF& cell, int velocity) {
  return {cell.left() + 5, cell.bottom() - 6, (cell.width() - 10) * velocity / 127, 3};
}

QRectF StepGridGeometry::dot(const QRectF& cell) { return {cell.center() - QPointF(2, 4), QSizeF(4, 4)}; }

}  // namespace velmora
