#include <QAccessible>

#include "tests/Velmora/Studio/StepGrid/StepGridBench.h"

namespace velmora {
namespace {

using AccessibleStepGridTest = testing::StepGridBench;

TEST_F(AccessibleStepGridTest, HasAChildForEveryCell) {
  QAccessibleInterface& grid = *QAccessible::queryAccessibleInterface(&canvas());
  ASSERT_EQ(grid.childCount(), 128);
  int index = 0;
  for (const StepPlace place : canvas().grid().places()) {
    QAccessibleInterface* const cell = grid.child(index);
    EXPECT_EQ(grid.indexOfChild(cell), index++);
    EXPECT_EQ(cell->parent(), &grid);
    const QPoint middle = canvas().mapToGlobal(at(place.row, place.column));
    EXPECT_EQ(grid.childAt(middle.x(), middle.y()), cell);
    EXPECT_EQ(cell->text(QAccessible::Name), canvas().step(place).label());
    EXPECT_EQ(cell->text(QAccessible::UserText), canvas().step(place).identifier());
  }
}

TEST_F(AccessibleStepGridTest, AReaderEditsACell) {
  QAccessibleInterface& grid = *QAccessible::queryAccessibleInterface(&canvas());
  QAccessibleInterface* const kick = grid.child(0);
  const auto act = [&](const QString& name) { kick->actionInterface()->doAction(name); };
  EXPECT_EQ(kick->text(QAccessible::Value), "On, velocity 127");
  EXPECT_EQ(kick->text(QAccessible::Description), "Activate to toggle. Adjust to change velocity.");
  kick->valueInterface()->setCurrentValue(125);
  act(QAccessibleActionInterface::increaseAction());
  EXPECT_EQ(velocity(DrumSound::kick, 0), 127);
  act(QAccessibleActionInterface::decreaseAction());
  EXPECT_EQ(kick->valueInterface()->currentValue(), 119);
  EXPECT_TRUE(kick->state().checked);
  act(QAccessibleActionInterface::toggleAction());
  EXPECT_FALSE(kick->state().checked);
  act(QAccessibleActionInterface::increaseAction());
  kick->valueInterface()->setCurrentValue(90);
  EXPECT_EQ(kick->text(QAccessible::Value), "Off");
  grid.child(40)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
  EXPECT_EQ(grid.focusChild(), grid.child(40));
}

}  // namespace
}  // namespace velmora
