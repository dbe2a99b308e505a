#pragma once

#include "Velmora/Studio/StepGrid/StepGridCanvas.h"
#include "Velmora/Theme/AccessiblePart.h"

namespace velmora {

/// What a screen reader sees of one cell: a check box with the velocity as its number, 0 while it is off.
/// Stands for a place of the page, not for a step of the pattern. `QAccessible::UserText` holds the
/// identifier.
class AccessibleStep final : public AccessiblePart<StepGridCanvas>, public QAccessibleValueInterface {
 public:
  AccessibleStep(StepGridCanvas* canvas, StepPlace place) : AccessiblePart(canvas), place_(place) {}

  bool isValid() const override;
  QString text(QAccessible::Text type) const override;
  QAccessible::Role role() const override { return QAccessible::CheckBox; }
  QAccessible::State state() const override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;

  QVariant currentValue() const override;
  void setCurrentValue(const QVariant& value) override;
  QVariant minimumValue() const override { return 0; }
  QVariant maximumValue() const override { return 127; }
  QVariant minimumStepSize() const override { return DrumStepControl::velocityStep; }

 private:
  QRectF frame() const override { return canvas()->grid().slot(place_); }
  DrumStep step() const { return canvas()->step(place_); }
  DrumStepControl control() const { return canvas()->control(place_); }

  StepPlace place_;
};

}  // namespace velmora
