#include "Velmora/Studio/StepGrid/AccessibleStep.h"

namespace velmora {

bool AccessibleStep::isValid() const { return canvas_ && place_.column < canvas_->grid().stepCount; }

QAccessibleInterface* AccessibleStep::parent() const {
  return QAccessible::queryAccessibleInterface(canvas_);
}

QWindow* AccessibleStep::window() const {
  const QAccessibleInterface* const canvas = parent();
  return canvas ? canvas->window() : nullptr;
}

QString AccessibleStep::text(QAccessible::Text type) const {
  if (!isValid()) return {};
  switch (type) {
    case QAccessible::Name:
      return step().label();
    case QAccessible::Value:
      return step().value();
    case QAccessible::Description:
      return DrumStep::hint();
    case QAccessible::Help:
      return step().help();
    case QAccessible::UserText:
      return step().identifier();
    default:
      return {};
  }
}

QRect AccessibleStep::rect() const {
  if (!isValid()) return {};
  const QRect slot = canvas_->grid().slot(place_).toAlignedRect();
  return {canvas_->mapToGlobal(slot.topLeft()), slot.size()};
}

QAccessible::State AccessibleStep::state() const {
  QAccessible::State state;
  state.invalid = !isValid();
  if (state.invalid) return state;
  state.disabled = !canvas_->isEnabled();
  state.invisible = !canvas_->isVisible();
  state.focusable = true;
  state.focused = canvas_->hasFocus() && canvas_->cursor() == place_;
  state.checkable = true;
  state.checked = step().velocity.has_value();
  return state;
}

void* AccessibleStep::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
  if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
  return nullptr;
}

QStringList AccessibleStep::actionNames() const {
  if (!isValid() || !canvas_->isEnabled()) return {};
  return {toggleAction(), increaseAction(), decreaseAction(), setFocusAction()};
}

void AccessibleStep::doAction(const QString& name) {
  if (!actionNames().contains(name)) return;
  if (name == toggleAction()) return control().toggle();
  if (name == increaseAction()) return control().adjustVelocity(1);
  if (name == decreaseAction()) return control().adjustVelocity(-1);
  canvas_->takeKeyboardFocus(place_);
}

QVariant AccessibleStep::currentValue() const { return isValid() ? step().velocity.value_or(0) : 0; }

void AccessibleStep::setCurrentValue(const QVariant& value) {
  if (isValid()) control().setVelocity(qRound(value.toDouble()));
}

}  // namespace velmora
