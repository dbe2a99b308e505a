#pragma once

#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QPointer>

#include "Keyboard/Keyboard.h"

namespace keyboard {

/// What a screen reader sees of one key: a button that plays it. Stands for a place in the row of keys, not
/// for a pitch.
class AccessibleKey : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  AccessibleKey(Keyboard* keyboard, int index) : keyboard_(keyboard), index_(index) {}

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
  QAccessible::Role role() const override { return QAccessible::Button; }
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  tonic::Pitch pitch() const;

  QPointer<Keyboard> keyboard_;
  int index_;
};

}  // namespace keyboard
