#pragma once

#include <QAccessibleWidget>
#include <vector>

#include "Keyboard/Keyboard.h"

namespace keyboard {

/// What a screen reader sees of a keyboard: a group with a button for each key, from the lowest up.
class AccessibleKeyboard : public QAccessibleWidget {
 public:
  explicit AccessibleKeyboard(Keyboard* keyboard) : QAccessibleWidget(keyboard, QAccessible::Grouping) {}
  ~AccessibleKeyboard() override;

  /// Makes every keyboard of the process accessible; more calls do nothing.
  static void install();

  int childCount() const override;
  QAccessibleInterface* child(int index) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* focusChild() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;

 private:
  Keyboard& keyboard() const;
  QAccessibleInterface* childFor(tonic::Pitch pitch) const;

  mutable std::vector<QAccessible::Id> keys_;  // made when first asked for, kept until the keyboard goes
};

}  // namespace keyboard
