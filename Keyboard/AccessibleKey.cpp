#include "Keyboard/AccessibleKey.h"

namespace keyboard {

tonic::Pitch AccessibleKey::pitch() const {
  return tonic::Pitch(keyboard_->keyboardLayout().shownRange().lowerBound().intValue() + index_);
}

bool AccessibleKey::isValid() const {
  return keyboard_ && index_ < keyboard_->keyboardLayout().shownRange().count();
}

QAccessibleInterface* AccessibleKey::parent() const {
  return QAccessible::queryAccessibleInterface(keyboard_);
}

QWindow* AccessibleKey::window() const {
  const QAccessibleInterface* keyboard = parent();
  return keyboard ? keyboard->window() : nullptr;
}

QString AccessibleKey::text(QAccessible::Text type) const {
  if (!isValid() || type != QAccessible::Name) return {};
  return Keyboard::tr("MIDI note %1").arg(pitch().intValue());
}

QRect AccessibleKey::rect() const {
  if (!isValid()) return {};
  const QRect frame = keyboard_->frameOf(pitch()).toAlignedRect();
  return {keyboard_->mapToGlobal(frame.topLeft()), frame.size()};
}

QAccessible::State AccessibleKey::state() const {
  QAccessible::State state;
  state.invalid = !isValid();
  if (state.invalid) return state;
  state.disabled = !keyboard_->isEnabled();
  state.invisible = !keyboard_->isVisible();
  state.focusable = true;
  state.focused = keyboard_->hasFocus() && keyboard_->currentPitch() == pitch();
  state.pressed = keyboard_->model().activePitches().contains(pitch());
  return state;
}

void* AccessibleKey::interface_cast(QAccessible::InterfaceType type) {
  return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList AccessibleKey::actionNames() const {
  return isValid() && keyboard_->isEnabled() ? QStringList{pressAction(), setFocusAction()} : QStringList();
}

void AccessibleKey::doAction(const QString& name) {
  if (!actionNames().contains(name)) return;
  if (name == pressAction()) return keyboard_->press(pitch());
  keyboard_->setFocus();
  keyboard_->setCurrentPitch(pitch());
}

}  // namespace keyboard
