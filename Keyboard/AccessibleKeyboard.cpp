#include "Keyboard/AccessibleKeyboard.h"

#include <algorithm>
#include <cstddef>

#include "Keyboard/AccessibleKey.h"

namespace keyboard {

namespace {

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
  auto* keyboard = qobject_cast<Keyboard*>(object);
  return keyboard ? new AccessibleKeyboard(keyboard) : nullptr;
}

}  // namespace

void AccessibleKeyboard::install() {
  [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(makeAccessible), true);
}

AccessibleKeyboard::~AccessibleKeyboard() {
  for (QAccessible::Id id : keys_) QAccessible::deleteAccessibleInterface(id);
}

Keyboard& AccessibleKeyboard::keyboard() const { return *static_cast<Keyboard*>(object()); }

int AccessibleKeyboard::childCount() const { return keyboard().keyboardLayout().shownRange().count(); }

QAccessibleInterface* AccessibleKeyboard::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  while (static_cast<int>(keys_.size()) <= index) {
    auto* key = new AccessibleKey(&keyboard(), static_cast<int>(keys_.size()));
    keys_.push_back(QAccessible::registerAccessibleInterface(key));
  }
  return QAccessible::accessibleInterface(keys_[static_cast<std::size_t>(index)]);
}

QAccessibleInterface* AccessibleKeyboard::childFor(tonic::Pitch pitch) const {
  return child(keyboard().keyboardLayout().indexOf(pitch));
}

QAccessibleInterface* AccessibleKeyboard::childAt(int x, int y) const {
  const KeyRectInfo* key = keyboard().model().keyAt(keyboard().mapFromGlobal(QPointF(x, y)));
  return key ? childFor(key->pitch) : nullptr;
}

QAccessibleInterface* AccessibleKeyboard::focusChild() const {
  return keyboard().hasFocus() ? childFor(keyboard().currentPitch()) : nullptr;
}

int AccessibleKeyboard::indexOfChild(const QAccessibleInterface* child) const {
  const auto place = std::find_if(keys_.begin(), keys_.end(),
                                  [=](auto id) { return QAccessible::accessibleInterface(id) == child; });
  return place == keys_.end() ? -1 : static_cast<int>(place - keys_.begin());
}

}  // namespace keyboard
