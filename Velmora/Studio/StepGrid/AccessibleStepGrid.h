#pragma once

#include <QAccessibleWidget>
#include <array>

#include "Velmora/Studio/StepGrid/StepGridCanvas.h"

namespace velmora {

/// What a screen reader sees of a step grid: a group with a check box for each cell of the page, row by row.
class AccessibleStepGrid final : public QAccessibleWidget {
 public:
  explicit AccessibleStepGrid(StepGridCanvas* canvas) : QAccessibleWidget(canvas, QAccessible::Grouping) {}
  ~AccessibleStepGrid() override;

  /// Makes every grid of the process accessible; more calls do nothing.
  static void install();

  /// A cell's place among the children.
  static int indexOf(const StepGridGeometry& grid, StepPlace place);

  int childCount() const override;
  QAccessibleInterface* child(int index) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* focusChild() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;

 private:
  StepGridCanvas& canvas() const;

  // Made when first asked for and kept until the canvas goes: each stands for a place of a full page.
  mutable std::array<QAccessible::Id, StepGridGeometry::cellCount> steps_{};
};

}  // namespace velmora
