#include "Velmora/Theme/Popover.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/PopoverPlace.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

Popover::Popover(QWidget& anchor)
    : QWidget(&anchor, Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint) {
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_DeleteOnClose);
  setAttribute(Qt::WA_NoMouseReplay);  // the click that closes it does nothing else
}

Popover& Popover::open(QWidget& anchor, QWidget* content) {
  auto& popover = *new Popover(anchor);
  popover.setAccessibleName(content->accessibleName());
  auto* const layout = new QVBoxLayout(&popover);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(content);
  popover.adjustSize();
  popover.moveBeside(anchor);
  popover.show();
  return popover;
}

void Popover::moveBeside(const QWidget& anchor) {
  const QRect place(anchor.mapToGlobal(QPoint()), anchor.size());
  move(popoverPlace(place, size(), anchor.screen()->availableGeometry()));
}

void Popover::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) close();
}

void Popover::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPanel(painter, rect(), 12, Theme::raised, Theme::line);
}

}  // namespace velmora
