#pragma once

#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QAccessibleValueInterface>
#include <QPointer>

#include "Velmora/Studio/PianoRoll/PianoRollCanvasView.h"

namespace velmora {

/// What a screen reader sees of one note: a button that selects it, with its velocity as the value. Once the
/// note is removed it has an invalid state and does nothing.
class AccessibleNote final : public QAccessibleInterface,
                             public QAccessibleActionInterface,
                             public QAccessibleValueInterface {
 public:
  AccessibleNote(PianoRollCanvasView* canvas, const UUID& noteID) : canvas_(canvas), noteID_(noteID) {}

  const UUID& noteID() const { return noteID_; }

  bool isValid() const override { return !canvas_.isNull(); }
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
  QAccessible::Role role() const override { return QAccessible::Button; }
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

  QVariant currentValue() const override;
  void setCurrentValue(const QVariant& value) override;
  QVariant minimumValue() const override { return 1; }
  QVariant maximumValue() const override { return 127; }
  QVariant minimumStepSize() const override { return 1; }

 private:
  const Note* note() const;

  QPointer<PianoRollCanvasView> canvas_;
  const UUID noteID_;
};

}  // namespace velmora
