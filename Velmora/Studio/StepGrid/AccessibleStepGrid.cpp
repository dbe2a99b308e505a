#include "Velmora/Studio/StepGrid/AccessibleStepGrid.h"

#include <algorithm>

#include "Velmora/Studio/StepGrid/AccessibleStep.h"

namespace velmora {
namespace {

StepPlace placeOf(const StepGridGeometry& grid, int index) {
  return {index / grid.stepCount, index % grid.stepCount};
}

}  // namespace

void AccessibleStepGrid::install() { installAccessible<StepGridCanvas, AccessibleStepGrid>(); }

AccessibleStepGrid::~AccessibleStepGrid() {
  for (const QAccessible::Id id : steps_) {
    if (id != 0) QAccessible::deleteAccessibleInterface(id);
  }
}

int AccessibleStepGrid::indexOf(const StepGridGeometry& grid, StepPlace place) {
  return place.row * grid.stepCount + place.column;
}

StepGridCanvas& AccessibleStepGrid::canvas() const { return *static_cast<StepGridCanvas*>(object()); }

int AccessibleStepGrid::childCount() const { return StepGridGeometry::rowCount * canvas().grid().stepCount; }

QAccessibleInterface* AccessibleStepGrid::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  const StepPlace place = placeOf(canvas().grid(), index);
  QAccessible::Id& id = steps_[StepGridGeometry::indexOnFullPage(place)];
  if (id == 0) id = QAccessible::registerAccessibleInterface(new AccessibleStep(&canvas(), place));
  return QAccessible::accessibleInterface(id);
}

QAccessibleInterface* AccessibleStepGrid::childAt(int x, int y) const {
  const StepGridGeometry& grid = canvas().grid();
  const auto place = grid.placeAt(canvas().mapFromGlobal(QPointF(x, y)));
  return place ? child(indexOf(grid, *place)) : nullptr;
}

QAccessibleInterface* AccessibleStepGrid::focusChild() const {
  return canvas().hasFocus() ? child(indexOf(canvas().grid(), canvas().cursor())) : nullptr;
}

int AccessibleStepGrid::indexOfChild(const QAccessibleInterface* child) const {
  const auto isChild = [=](QAccessible::Id id) {
    return id != 0 && QAccessible::accessibleInterface(id) == child;
  };
  const auto found = std::ranges::find_if(steps_, isChild);
  if (found == steps_.end() || !child->isValid()) return -1;
  const auto index = static_cast<int>(found - steps_.begin());
  return indexOf(canvas().grid(), {index / StepPages::stepsPerPage, index % StepPages::stepsPerPage});
}

}  // namespace velmora
