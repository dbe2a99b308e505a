#include "Velmora/Studio/StepGrid/AccessibleStep.h"

namespace velmora {

bool AccessibleStep::isValid() const { return canvas() && place_.column < canvas()->grid().stepCount; }

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

QAccessible::State AccessibleStep::state() const {
  QAccessible::State state = AccessiblePart::state();
  if (state.invalid) return state;
  state.focused = canvas()->hasFocus() && canvas()->cursor() == place_;
  state.checkable = true;
  state.checked = step().velocity.has_value();
  return state;
}

QStringList AccessibleStep::actionNames() const {
  if (!isValid() || !canvas()->isEnabled()) return {};
  return {toggleAction(), increaseAction(), decreaseAction(), setFocusAction()};
}

void AccessibleStep::doAction(const QString& name) {
  if (!actionNames().contains(name)) return;
  if (name == toggleAction()) return control().toggle();
  if (name == increaseAction()) return control().adjustVelocity(1);
  if (name == decreaseAction()) return control().adjustVelocity(-1);
  canvas()->takeKeyboardFocus(place_);
}

QVariant AccessibleStep::currentValue() const { return isValid() ? step().velocity.value_or(0) : 0; }

void AccessibleStep::setCurrentValue(const QVariant& value) {
  if (isValid()) control().setVelocity(qRound(value.toDouble()));
}

}  // namespace velmora
