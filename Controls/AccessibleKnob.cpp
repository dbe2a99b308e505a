#include "Controls/AccessibleKnob.h"

#include "Controls/SmallKnob.h"

namespace controls {

namespace {

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
  auto* knob = qobject_cast<SmallKnob*>(object);
  return knob ? new AccessibleKnob(knob) : nullptr;
}

}  // namespace

AccessibleKnob::AccessibleKnob(SmallKnob* knob) : QAccessibleWidget(knob, QAccessible::Dial) {}

void AccessibleKnob::install() {
  [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
}

SmallKnob& AccessibleKnob::knob() const { return *static_cast<SmallKnob*>(object()); }

void* AccessibleKnob::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QString AccessibleKnob::text(QAccessible::Text type) const {
  if (type == QAccessible::Value) return knob().spokenValue();
  const QString given = QAccessibleWidget::text(type);
  // The bridge passes a value on as a bare number; the description is how its text is heard.
  return given.isEmpty() && type == QAccessible::Description ? knob().spokenValue() : given;
}

QVariant AccessibleKnob::currentValue() const { return knob().value(); }
void AccessibleKnob::setCurrentValue(const QVariant& value) { knob().adjustTo(value.toFloat()); }
QVariant AccessibleKnob::minimumValue() const { return knob().range().lower; }
QVariant AccessibleKnob::maximumValue() const { return knob().range().upper; }
QVariant AccessibleKnob::minimumStepSize() const { return knob().step(); }

QStringList AccessibleKnob::actionNames() const {
  if (!knob().isEnabled()) return {};
  return QStringList{increaseAction(), decreaseAction()} + QAccessibleWidget::actionNames();
}

void AccessibleKnob::doAction(const QString& name) {
  if (!knob().isEnabled()) return;
  if (name == increaseAction()) return knob().stepBy(1);
  if (name == decreaseAction()) return knob().stepBy(-1);
  QAccessibleWidget::doAction(name);
}

}  // namespace controls
