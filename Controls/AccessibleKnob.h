#pragma once

#include <QAccessibleValueInterface>
#include <QAccessibleWidget>

namespace controls {

class SmallKnob;

/// What a screen reader sees of a knob: a dial with a value, its text, and the actions to raise and lower it.
class AccessibleKnob : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit AccessibleKnob(SmallKnob* knob);

  /// Makes every knob of the process accessible; more calls do nothing.
  static void install();

  void* interface_cast(QAccessible::InterfaceType type) override;
  QString text(QAccessible::Text type) const override;

  QVariant currentValue() const override;
  void setCurrentValue(const QVariant& value) override;
  QVariant minimumValue() const override;
  QVariant maximumValue() const override;
  QVariant minimumStepSize() const override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;

 private:
  SmallKnob& knob() const;
};

}  // namespace controls
