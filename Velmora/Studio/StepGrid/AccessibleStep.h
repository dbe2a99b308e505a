#pragma once

#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QAccessibleValueInterface>
#include <QPointer>

#include "Velmora/Studio/StepGrid/StepGridCanvas.h"

namespace velmora {

/// What a screen reader sees of one cell: a check box with the velocity as its number, 0 while it is off.
/// Stands for a place of the page, not for a step of the pattern. `QAccessible::UserText` holds the
/// identifier.
class AccessibleStep final : public QAccessibleInterface,
                             public QAccessibleActionInterface,
                             public QAccessibleValueInterface {
 public:
  AccessibleStep(StepGridCanvas* canvas, StepPlace place) : canvas_(canvas), place_(place) {}

  bool isValid() const override;
  QObject* object() const override { return nullptr; }
  QWindow* window() const override;
  QAccessibleInterface* parent() const override;
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }

  QString text(QAccessible::Text type) const override;
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override;
  QAccessible::Role role() const override { return QAccessible::CheckBox; }
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

  QVariant currentValue() const override;
  void setCurrentValue(const QVariant& value) override;
  QVariant minimumValue() const override { return 0; }
  QVariant maximumValue() const override { return 127; }
  QVariant minimumStepSize() const override { return DrumStepControl::velocityStep; }

 private:
  DrumStep step() const { return canvas_->step(place_); }
  DrumStepControl control() const { return canvas_->control(place_); }

  QPointer<StepGridCanvas> canvas_;
  StepPlace place_;
};

}  // namespace velmora
