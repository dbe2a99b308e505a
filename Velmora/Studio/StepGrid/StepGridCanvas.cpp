#include "Velmora/Studio/StepGrid/StepGridCanvas.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QToolTip>
#include <QTouchEvent>
#include <algorithm>
#include <utility>

#include "Velmora/Studio/StepGrid/AccessibleStepGrid.h"

namespace velmora {

StepGridCanvas::StepGridCanvas(QWidget* parent) : QWidget(parent) {
  AccessibleStepGrid::install();
  setObjectName("steps");
  setAccessibleName("Step grid");
  setAttribute(Qt::WA_AcceptTouchEvents);
  setFocusPolicy(Qt::StrongFocus);
  setProperty("keepsEditingKeys", true);
  hold_.setSingleShot(true);
  hold_.setInterval(DrumStepControl::holdTime);
  hold_.callOnTimeout(this, [this] { holdPress(); });
  announcement_.setSingleShot(true);
  announcement_.setInterval(std::chrono::milliseconds(100));
  announcement_.callOnTimeout(this, [this] { tellValue(); });
}

// The page

bool StepGridCanvas::isShown(StepPlace place) const {
  return place.row < StepGridGeometry::rowCount && place.column < grid().stepCount;
}

void StepGridCanvas::setPage(const StepGridPage& page) {
  if (page == page_) return;
  const StepGridPage before = std::exchange(page_, page);
  const Velocities velocitiesBefore = std::exchange(velocities_, readVelocities());
  if (page.firstStep != before.firstStep || page.color != before.color || page.geometry != before.geometry) {
    cancelPress();
    resize(grid().size());
    cursor_.column = std::clamp(cursor_.column, 0, std::max(grid().stepCount - 1, 0));
    update();
  }
  if (page.firstStep != before.firstStep) tellNames();
  showDifferences(velocitiesBefore);
}

StepGridCanvas::Velocities StepGridCanvas::readVelocities() const {
  Velocities velocities;
  for (const StepPlace place : grid().places()) velocities[indexOf(place)] = step(place).velocity;
  return velocities;
}

void StepGridCanvas::showDifferences(const Velocities& before) {
  for (const StepPlace place : grid().places()) {
    if (velocities_[indexOf(place)] == before[indexOf(place)]) continue;
    update(grid().slot(place).toAlignedRect());
    if (press_ && press_->place == place) cancelPress();
    if (velocities_[indexOf(place)].has_value() != before[indexOf(place)].has_value()) tellState(place);
    if (place == cursor_ && hasFocus() && !announcement_.isActive()) announcement_.start();
  }
}

DrumStep StepGridCanvas::step(StepPlace place) const {
  const DrumSound sound = stepSounds[static_cast<std::size_t>(place.row)];
  const int step = page_.firstStep + place.column;
  return {sound, step, page_.pattern.stepVelocity(sound, step)};
}

DrumStepControl StepGridCanvas::control(StepPlace place) const {
  const DrumStep at = step(place);
  return {at,
          {[this, at] { onToggle(at.sound, at.step); },
           [this, at](int velocity) { onSetVelocity(at.sound, at.step, velocity); }}};
}

// Presses

std::optional<int> StepGridCanvas::draggedVelocity() const {
  return press_ ? press_->control.draggedVelocity() : std::nullopt;
}

void StepGridCanvas::beginPress(QPointF point) {
  const auto place = grid().placeAt(point);
  if (!place) return;
  press_.emplace(Press{*place, control(*place)});
  press_->control.press(point);
  if (press_->control.mayBecomeDrag()) hold_.start();
  cursor_ = *place;
  lead_.mouseUsed();
  update();
}

void StepGridCanvas::holdPress() {
  if (!press_) return;
  press_->control.hold();
  update();
}

void StepGridCanvas::movePress(QPointF point) {
  const auto before = draggedVelocity();
  press_->control.moveTo(point);
  if (draggedVelocity() != before) update(bubble().united(grid().slot(press_->place)).toAlignedRect());
}

void StepGridCanvas::endPress(QPointF point) {
  const Press ended = *std::exchange(press_, std::nullopt);
  hold_.stop();
  update();
  const bool isInside = grid().placeAt(point) == ended.place;
  ended.control.release(isInside ? DrumStepControl::Release::inside : DrumStepControl::Release::outside);
}

void StepGridCanvas::cancelPress() {
  panPoint_.reset();
  if (!press_) return;
  press_.reset();
  hold_.stop();
  update();
}

void StepGridCanvas::mousePressEvent(QMouseEvent* event) {
  if (press_) return cancelPress();
  if (event->button() == Qt::LeftButton) beginPress(event->position());
}

/// A quick second press, which may have come as a plain one before.
void StepGridCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
  if (!press_ || event->button() != Qt::LeftButton) mousePressEvent(event);
}

void StepGridCanvas::mouseMoveEvent(QMouseEvent* event) {
  if (!press_) return;
  if (event->buttons() & Qt::LeftButton) return movePress(event->position());
  cancelPress();  // the release went elsewhere
}

void StepGridCanvas::mouseReleaseEvent(QMouseEvent* event) {
  if (press_ && event->button() == Qt::LeftButton) endPress(event->position());
}

bool StepGridCanvas::touch(const QTouchEvent& event) {
  if (event.type() == QEvent::TouchCancel || event.points().size() != 1) {
    cancelPress();
    return true;
  }
  const QEventPoint& finger = event.points().front();
  if (event.type() == QEvent::TouchBegin) {
    setFocus(Qt::MouseFocusReason);
    beginPress(finger.position());
    panPoint_ = finger.globalPosition();
  } else if (event.type() == QEvent::TouchUpdate) {
    moveFinger(finger);
  } else {
    panPoint_.reset();
    if (press_) endPress(finger.position());
  }
  return true;
}

/// Until it drags a velocity, a finger that moves on moves the page.
void StepGridCanvas::moveFinger(const QEventPoint& finger) {
  if (!panPoint_) return;
  if (press_) movePress(finger.position());
  const QPointF way = finger.globalPosition() - *panPoint_;
  if (draggedVelocity() || (press_ && way.manhattanLength() <= DrumStepControl::holdTolerance)) return;
  cancelPress();
  panPoint_ = finger.globalPosition();
  onPan(way.toPoint());
}

void StepGridCanvas::contextMenuEvent(QContextMenuEvent* event) {
  const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
  if (!isByKey && QGuiApplication::mouseButtons() & Qt::LeftButton) return;  // it cancelled a press
  const auto place = isByKey ? std::optional(cursor_) : grid().placeAt(event->pos());
  if (!place || !isShown(*place)) return;
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const DrumStepControl::MenuItem& item : control(*place).menu())
    menu->addAction(item.text, this, item.run);
  menu->popup(isByKey ? mapToGlobal(grid().cell(*place).bottomLeft().toPoint()) : event->globalPos());
}

// The other events

bool StepGridCanvas::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
      return touch(*static_cast<QTouchEvent*>(event));
    case QEvent::ToolTip:
      showHelp(static_cast<QHelpEvent*>(event)->pos(), static_cast<QHelpEvent*>(event)->globalPos());
      return true;
    default:
      return QWidget::event(event);
  }
}

void StepGridCanvas::showHelp(const QPoint& position, const QPoint& globalPosition) {
  const auto place = grid().placeAt(position);
  if (!place || press_) return QToolTip::hideText();
  QToolTip::showText(globalPosition, step(*place).help(), this, grid().slot(*place).toAlignedRect());
}

void StepGridCanvas::takeKeyboardFocus(StepPlace place) {
  setFocus(Qt::TabFocusReason);
  lead_.takeByTab();
  moveCursor(place);
}

void StepGridCanvas::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  lead_.focusCame(*event);
  update();
  tellCursor();
}

void StepGridCanvas::focusOutEvent(QFocusEvent* event) {
  cancelPress();
  update();
  QWidget::focusOutEvent(event);
}

void StepGridCanvas::hideEvent(QHideEvent* event) {
  cancelPress();
  QWidget::hideEvent(event);
}

// What a screen reader hears

void StepGridCanvas::tell(QAccessibleEvent&& event, StepPlace place) {
  event.setChild(AccessibleStepGrid::indexOf(grid(), place));
  QAccessible::updateAccessibility(&event);
}

void StepGridCanvas::tellCursor() {
  if (hasFocus() && isShown(cursor_)) tell(QAccessibleEvent(this, QAccessible::Focus), cursor_);
}

void StepGridCanvas::tellNames() {
  for (const StepPlace place : grid().places()) tell(QAccessibleEvent(this, QAccessible::NameChanged), place);
}

void StepGridCanvas::tellState(StepPlace place) {
  QAccessible::State changed;
  changed.checked = true;
  tell(QAccessibleStateChangeEvent(this, changed), place);
}

void StepGridCanvas::tellValue() {
  if (!hasFocus() || !isShown(cursor_)) return;
  tell(QAccessibleValueChangeEvent(this, step(cursor_).velocity.value_or(0)), cursor_);
}

}  // namespace velmora
