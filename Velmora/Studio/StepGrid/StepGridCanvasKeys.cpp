// The computer's keys on the step grid.

#include <QKeyEvent>
#include <algorithm>

#include "Velmora/Studio/StepGrid/StepGridCanvas.h"

namespace velmora {

struct StepGridCanvas::KeyRow {
  enum class WhileHeld { repeats, once };

  int key;
  bool (StepGridCanvas::*run)(int amount);  // false leaves the key to others
  int amount = 0;
  WhileHeld whileHeld = WhileHeld::repeats;
};

bool StepGridCanvas::runKey(const QKeyEvent& event) {
  constexpr auto once = KeyRow::WhileHeld::once;
  static constexpr KeyRow rows[] = {
      {Qt::Key_Left, &StepGridCanvas::moveAcross, -1},
      {Qt::Key_Right, &StepGridCanvas::moveAcross, 1},
      {Qt::Key_Up, &StepGridCanvas::moveDown, -1},
      {Qt::Key_Down, &StepGridCanvas::moveDown, 1},
      {Qt::Key_Home, &StepGridCanvas::moveToEnd, 0},
      {Qt::Key_End, &StepGridCanvas::moveToEnd, StepPages::stepsPerPage - 1},
      {Qt::Key_PageUp, &StepGridCanvas::turnPage, -1},
      {Qt::Key_PageDown, &StepGridCanvas::turnPage, 1},
      {Qt::Key_Plus, &StepGridCanvas::adjustVelocity, 1},
      {Qt::Key_Equal, &StepGridCanvas::adjustVelocity, 1},  // the plus of many keyboards, without Shift
      {Qt::Key_Minus, &StepGridCanvas::adjustVelocity, -1},
      {Qt::Key_Return, &StepGridCanvas::activate, 0, once},
      {Qt::Key_Enter, &StepGridCanvas::activate, 0, once},
      {Qt::Key_Space, &StepGridCanvas::activate, 0, once},
      {Qt::Key_Delete, &StepGridCanvas::clear, 0, once},
      {Qt::Key_Backspace, &StepGridCanvas::clear, 0, once},
      {Qt::Key_Escape, &StepGridCanvas::cancel, 0, once},
  };
  if (event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) return false;
  const auto* const row = std::ranges::find(rows, event.key(), &KeyRow::key);
  if (row == std::end(rows)) return false;
  return (event.isAutoRepeat() && row->whileHeld == once) || (this->*row->run)(row->amount);
}

void StepGridCanvas::keyPressEvent(QKeyEvent* event) {
  if (!runKey(*event)) QWidget::keyPressEvent(event);
}

void StepGridCanvas::moveCursor(StepPlace place) {
  if (grid().stepCount == 0) return;
  cursor_ = {std::clamp(place.row, 0, StepGridGeometry::rowCount - 1),
             std::clamp(place.column, 0, grid().stepCount - 1)};
  lead_.keyUsed();
  update();
  onReveal(grid().slot(cursor_).toAlignedRect());
  tellCursor();
}

/// Goes on to the neighbouring bars.
bool StepGridCanvas::moveAcross(int columns) {
  const int column = cursor_.column + columns;
  const int firstBefore = page_.firstStep;
  if (column < 0 || column >= grid().stepCount) onTurnPage(columns);
  if (page_.firstStep == firstBefore) {
    moveCursor({cursor_.row, column});
  } else {
    moveCursor({cursor_.row, columns > 0 ? 0 : grid().stepCount - 1});
  }
  return true;
}

bool StepGridCanvas::moveDown(int rows) {
  moveCursor({cursor_.row + rows, cursor_.column});
  return true;
}

bool StepGridCanvas::moveToEnd(int column) {
  moveCursor({cursor_.row, column});
  return true;
}

bool StepGridCanvas::turnPage(int pages) {
  onTurnPage(pages);
  moveCursor(cursor_);
  return true;
}

bool StepGridCanvas::adjustVelocity(int steps) {
  if (!isShown(cursor_)) return false;
  control(cursor_).adjustVelocity(steps);
  return true;
}

/// Only while the focus came by Tab: otherwise these keys are the transport's.
bool StepGridCanvas::activate(int) {
  if (!lead_.cameByTab() || !isShown(cursor_)) return false;
  control(cursor_).toggle();
  return true;
}

bool StepGridCanvas::clear(int) {
  if (!lead_.showsCursor() || !isShown(cursor_) || !step(cursor_).velocity) return false;
  control(cursor_).toggle();
  return true;
}

bool StepGridCanvas::cancel(int) {
  const bool isPressed = press_.has_value();
  cancelPress();
  return isPressed;
}

}  // namespace velmora
