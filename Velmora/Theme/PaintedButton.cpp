#include "Velmora/Theme/PaintedButton.h"

#include <QKeyEvent>

namespace velmora {

PaintedButton::PaintedButton(const QString& label, QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setLabel(label);
}

void PaintedButton::setLabel(const QString& label) {
  if (label == accessibleName()) return;  // a screen reader hears only of another one
  setAccessibleName(label);
  setToolTip(label);
}

void PaintedButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
  } else {
    QAbstractButton::keyPressEvent(event);
  }
}

}  // namespace velmora
