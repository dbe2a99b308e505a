#pragma once

#include <QAccessibleWidget>
#include <vector>

#include "Velmora/Studio/Arrangement/ArrangementCanvas.h"

namespace velmora {

/// What a screen reader sees of the canvas: a list of all clips, lane after lane.
class AccessibleCanvas final : public QAccessibleWidget {
 public:
  explicit AccessibleCanvas(ArrangementCanvas* canvas) : QAccessibleWidget(canvas, QAccessible::List) {}
  ~AccessibleCanvas() override;

  /// Makes every canvas of the process accessible; more calls do nothing.
  static void install();

  int childCount() const override;
  QAccessibleInterface* child(int index) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* focusChild() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;

 private:
  ArrangementCanvas& canvas() const;

  mutable std::vector<QAccessible::Id> clips_;  // made when first asked for, kept until the canvas goes
};

}  // namespace velmora
