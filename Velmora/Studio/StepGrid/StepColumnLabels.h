#pragma once

#include <QWidget>

#include "Velmora/Studio/StepGrid/StepGridGeometry.h"

namespace velmora {

/// The line over the rows: "SOUND" over their names, and over the cells the beats of the page, which scroll
/// sideways with them.
class StepColumnLabels final : public QWidget {
 public:
  static constexpr int lineHeight = 28;

  using QWidget::QWidget;

  void setGrid(const StepGridGeometry& grid);
  void setOffset(int offset);        ///< points that are scrolled away at the left
  void setCellsLeft(int cellsLeft);  ///< where the cells begin

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintColumn(QPainter& painter, int column) const;

  StepGridGeometry grid_;
  int offset_ = 0;
  int cellsLeft_ = 0;
};

}  // namespace velmora
