#include "Velmora/Theme/AccessiblePopups.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QApplication>
#include <QWidget>

namespace velmora {

namespace {

/// A menu of the menu bar is a child there.
QList<QAccessibleInterface*> openPopups() {
  QList<QAccessibleInterface*> popups;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->windowType() != Qt::Popup || !window->isVisible()) continue;
    QAccessibleInterface* popup = QAccessible::queryAccessibleInterface(window);
    const QAccessibleInterface* parent = popup ? popup->parent() : nullptr;
    if (parent && parent->object() == qApp) popups << popup;
  }
  return popups;
}

/// The windows, and after them the popups.
class AccessibleApplication final : public QAccessibleApplication {
 public:
  int childCount() const override {
    return QAccessibleApplication::childCount() + static_cast<int>(openPopups().size());
  }
  QAccessibleInterface* child(int index) const override {
    const int windows = QAccessibleApplication::childCount();
    return index < windows ? QAccessibleApplication::child(index) : openPopups().value(index - windows);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const int window = QAccessibleApplication::indexOfChild(child);
    if (window >= 0) return window;
    const auto popup = static_cast<int>(openPopups().indexOf(child));
    return popup < 0 ? -1 : QAccessibleApplication::childCount() + popup;
  }
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
  return object == qApp ? new AccessibleApplication : nullptr;
}

}  // namespace

void showPopupsToScreenReaders() {
  QAccessible::installFactory(makeInterface);
  QAccessibleInterface* known = QAccessible::queryAccessibleInterface(qApp);
  if (!dynamic_cast<AccessibleApplication*>(known))
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(known));
}

}  // namespace velmora
