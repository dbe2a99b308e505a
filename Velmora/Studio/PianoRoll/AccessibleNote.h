#pragma once

#include "Velmora/Studio/PianoRoll/PianoRollCanvasView.h"
#include "Velmora/Theme/AccessiblePart.h"

namespace velmora {

/// What a screen reader sees of one note: a button that selects it, with its velocity as the value. Once the
/// note is removed it has an invalid state and does nothing.
class AccessibleNote final : public AccessiblePart<PianoRollCanvasView>, public QAccessibleValueInterface {
 public:
  AccessibleNote(PianoRollCanvasView* canvas, const UUID& noteID) : AccessiblePart(canvas), noteID_(noteID) {}

  const UUID& noteID() const { return noteID_; }

  QString text(QAccessible::Text type) const override;
  QAccessible::Role role() const override { return QAccessible::Button; }
  QAccessible::State state() const override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;

  QVariant currentValue() const override;
  void setCurrentValue(const QVariant& value) override;
  QVariant minimumValue() const override { return 1; }
  QVariant maximumValue() const override { return 127; }
  QVariant minimumStepSize() const override { return 1; }

 private:
  QRectF frame() const override;
  const Note* note() const;

  const UUID noteID_;
};

}  // namespace velmora
