#include "Velmora/Studio/Shell/ResizeHandle.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>
#include <utility>

#include "Velmora/Studio/Shell/KeyFilter.h"
#include "Velmora/Studio/Shell/WorkspaceLayout.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

ResizeHandle::ResizeHandle(Spoken::Adjustment adjustment, QWidget* parent)
    : QWidget(parent), adjustment_(std::move(adjustment)) {
  setObjectName("workspace.resizeHandle");
  setAccessibleName("Editor height");
  setAccessibleDescription("Drag to resize the editor");
  setToolTip(accessibleDescription());
  setProperty(KeyFilter::keepsEditingKeys, true);
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::SizeVerCursor);
  const auto percent = [this] { return QString::number(qRound(100 * adjustment_.value())) + " percent"; };
  Spoken::attach(*this, {.role = QAccessible::Slider, .value = percent, .adjustment = adjustment_});
}

void ResizeHandle::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::background);
  QRectF capsule(0, 0, 44, 4);
  capsule.moveCenter(QRectF(rect()).center());
  paintPanel(painter, capsule, 2, Theme::secondary);
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, capsule.adjusted(-8, -8, 8, 8), 10);
}

double ResizeHandle::translation(const QMouseEvent& event) const {
  return event.globalPosition().y() - *pressedAt_;
}

void ResizeHandle::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) pressedAt_ = event->globalPosition().y();
}

void ResizeHandle::mouseMoveEvent(QMouseEvent* event) {
  if (!pressedAt_) return;
  isDragging_ = isDragging_ || std::abs(translation(*event)) >= dragDistance;
  if (isDragging_ && onDrag) onDrag(translation(*event));
}

void ResizeHandle::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !pressedAt_) return;
  const double dragged = translation(*event);
  pressedAt_.reset();
  if (std::exchange(isDragging_, false) && onDragEnd) onDragEnd(dragged);
}

void ResizeHandle::keyPressEvent(QKeyEvent* event) {
  const int steps = (event->key() == Qt::Key_Up) - (event->key() == Qt::Key_Down);
  if (steps == 0) return QWidget::keyPressEvent(event);
  adjustment_.move(steps);
}

}  // namespace velmora
