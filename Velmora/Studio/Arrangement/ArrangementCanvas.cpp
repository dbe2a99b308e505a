#include "Velmora/Studio/Arrangement/ArrangementCanvas.h"

#include <QLineF>
#include <QMouseEvent>
#include <QPainter>
#include <QTouchEvent>
#include <algorithm>
#include <utility>

#include "Velmora/Studio/Arrangement/AccessibleCanvas.h"
#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Studio/Arrangement/CanvasPainter.h"
#include "Velmora/Theme/Paint.h"

namespace velmora {

ArrangementCanvas::ArrangementCanvas(CanvasResponder& responder, const TransportController& transport,
                                     QWidget* parent)
    : QWidget(parent),
      responder_(responder),
      playhead_(transport, PlayheadMarker::Style::line, *this),
      gesture_(responder) {
  AccessibleCanvas::install();
  setObjectName("arrangement.canvas");
  setAccessibleName("Arrangement");
  setAccessibleDescription(
      "Arrow keys go from clip to clip and from track to track. With Shift they move the selected clip, with "
      "Shift and Alt they resize it.");
  setProperty("keepsEditingKeys", true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_AcceptTouchEvents);
  setMouseTracking(true);
}

void ArrangementCanvas::show(CanvasContent content) {
  if (content == content_) return;
  keepIndexes(content.data);
  const bool isOtherClip = content.selectedClipID != content_.selectedClipID;
  const bool isOtherData = content.data != content_.data;
  content_ = std::move(content);
  playhead_.place(content_.pointsPerBeat, content_.scrollOffset.x());
  update();
  if (isOtherData) {
    QAccessibleEvent event(this, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
  }
  if (isOtherClip) tellSelection();
}

void ArrangementCanvas::keepIndexes(const LaneData& next) {
  const std::size_t known = indexes_.size();
  indexes_.resize(next.lanes.size());
  for (std::size_t row = 0; row < std::min(known, indexes_.size()); ++row) {
    if (!next.lanes[row].clips.sharesStorage(content_.data.lanes[row].clips)) indexes_[row].reset();
  }
}

const LaneIndex& ArrangementCanvas::indexOf(int row) {
  auto& index = indexes_[static_cast<std::size_t>(row)];
  if (!index) index.emplace(content_.data.lane(row).clips);
  return *index;
}

QRectF ArrangementCanvas::frameOf(const ClipPlace& place) const {
  const ClipBox& clip = content_.data.clip(place);
  return ArrangementGeometry::clipFrame(clip.startBeat, clip.lengthBeats, place.row, content_.pointsPerBeat)
      .translated(-content_.scrollOffset);
}

std::optional<ClipPlace> ArrangementCanvas::selectedClip() const {
  return content_.selectedClipID ? content_.data.find(*content_.selectedClipID) : std::nullopt;
}

void ArrangementCanvas::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  ground_.prepare(content_, width(), devicePixelRatioF());
  CanvasPainter canvas(painter, content_, event->rect());
  canvas.paintGround(ground_);
  canvas.paintClips(clipPainter_, [this](int row) -> const LaneIndex& { return indexOf(row); });
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, rect(), 4);
  playhead_.paint(painter, event->rect());
}

void ArrangementCanvas::resizeEvent(QResizeEvent*) { responder_.resized(size()); }

// Pointers

bool ArrangementCanvas::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
      return touch(*static_cast<QTouchEvent*>(event));
    case QEvent::WindowDeactivate:
      gesture_.cancel();
      break;
    default:
      break;
  }
  return QWidget::event(event);
}

/// One finger does what the mouse does, two pinch.
bool ArrangementCanvas::touch(const QTouchEvent& event) {
  if (event.type() == QEvent::TouchCancel) {
    pinchSpan_.reset();
    gesture_.cancel();
  } else if (event.points().size() > 1 || pinchSpan_) {
    return pinch(event);
  } else {
    const QEventPoint& finger = event.points().front();
    if (finger.state() == QEventPoint::Pressed) {
      setFocus(Qt::MouseFocusReason);
      gesture_.press(finger.position());
    }
    if (finger.state() == QEventPoint::Updated) gesture_.move(finger.position());
    if (finger.state() == QEventPoint::Released) gesture_.release(finger.position());
  }
  return true;
}

bool ArrangementCanvas::pinch(const QTouchEvent& event) {
  gesture_.cancel();
  const auto& fingers = event.points();
  const QLineF span(fingers.front().position(), fingers.back().position());
  const bool isOver = fingers.size() < 2 || (event.touchPointStates() & QEventPoint::Released);
  if (!isOver) {
    if (!pinchSpan_) pinchSpan_ = std::max(span.length(), 1.0);
    responder_.pinched(span.length() / *pinchSpan_, span.center());
  } else if (std::exchange(pinchSpan_, std::nullopt)) {
    responder_.pinchEnded(span.center());
  }
  return true;
}

void ArrangementCanvas::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && event->buttons() == Qt::LeftButton) {
    gesture_.press(event->position());
  } else {
    gesture_.cancel();
  }
}

void ArrangementCanvas::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton)) gesture_.cancel();  // the release went elsewhere
  gesture_.move(event->position());
  if (!gesture_.isPressed()) setCursor(responder_.cursorAt(event->position()));
}

void ArrangementCanvas::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) gesture_.release(event->position());
}

void ArrangementCanvas::hideEvent(QHideEvent*) { gesture_.cancel(); }

// Keys and focus

void ArrangementCanvas::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && gesture_.isPressed()) return gesture_.cancel();
  if (!responder_.keyPressed(*event)) QWidget::keyPressEvent(event);
}

void ArrangementCanvas::focusInEvent(QFocusEvent*) {
  update();
  tellSelection();
}

void ArrangementCanvas::focusOutEvent(QFocusEvent*) {
  gesture_.cancel();
  update();
}

void ArrangementCanvas::tellSelection() {
  const auto place = selectedClip();
  if (!place || !hasFocus()) return;
  QAccessibleEvent event(this, QAccessible::Focus);
  event.setChild(content_.data.numberOf(*place));
  QAccessible::updateAccessibility(&event);
}

}  // namespace velmora
