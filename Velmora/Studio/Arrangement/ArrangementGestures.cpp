#include "Velmora/Studio/Arrangement/ArrangementGestures.h"

#include <cmath>
#include <utility>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Studio/Arrangement/AutoScroll.h"

namespace velmora {

namespace {

constexpr int frameMilliseconds = 16;
constexpr double anglePerNotch = 120;
constexpr double pointsPerNotch = ArrangementGeometry::laneHeight;

double notches(const QWheelEvent& event) {
  const QPoint angle = event.angleDelta();
  return (angle.y() != 0 ? angle.y() : angle.x()) / anglePerNotch;
}

/// The way of the content under a wheel, by pixels where the device counts them.
QPointF distanceOf(const QWheelEvent& event) {
  const QPointF distance = event.hasPixelDelta()
                               ? QPointF(event.pixelDelta())
                               : QPointF(event.angleDelta()) / anglePerNotch * pointsPerNotch;
  const bool isSideways = event.modifiers().testFlag(Qt::ShiftModifier) && distance.x() == 0;
  return isSideways ? distance.transposed() : distance;
}

}  // namespace

ArrangementGestures::ArrangementGestures(AppModel& model, ArrangementState& state)
    : model_(model), state_(state), keys_(model, state) {
  autoScroll_.setTimerType(Qt::PreciseTimer);
  autoScroll_.setInterval(frameMilliseconds);
  autoScroll_.callOnTimeout(this, [this] { autoScroll(); });
}

const ClipBox* ArrangementGestures::clipAt(const QPointF& content) {
  const LaneData& lanes = state_.lanes();
  const auto row = ArrangementGeometry::row(content.y(), lanes.trackCount());
  return row ? lanes.clipAt(*row, content.x() / state_.viewport().pointsPerBeat()) : nullptr;
}

void ArrangementGestures::tapped(const QPointF& point) {
  const QPointF content = state_.viewport().toContent(point);
  if (const ClipBox* clip = clipAt(content)) return model_.selectClip(clip->id);
  const auto row = ArrangementGeometry::row(content.y(), state_.lanes().trackCount());
  if (!state_.editsClips || !row) return model_.selectClip({});
  model_.placePattern(state_.lanes().lane(*row).id, content.x() / state_.viewport().pointsPerBeat());
}

// Drags

void ArrangementGestures::dragBegan(const QPointF& start) {
  dragKind_ = state_.editsClips ? DragKind::clip : DragKind::scroll;
  if (dragKind_ == DragKind::clip) state_.beginDrag(state_.viewport().toContent(start));
  grabbed_ = state_.viewport().toContent(start);
}

void ArrangementGestures::dragMoved(const QPointF& point) {
  dragPointer_ = point;
  if (dragKind_ == DragKind::scroll) {
    state_.changeViewport([&](TimelineViewport& viewport) { viewport.scrollTo(grabbed_ - point); });
  } else {
    dragClip();
  }
}

void ArrangementGestures::dragClip() {
  state_.dragTo(state_.viewport().toContent(dragPointer_));
  const bool isAtEdge = !autoScrollStep(dragPointer_, state_.viewport().viewportSize).isNull();
  if (!isAtEdge || !state_.dragChange()) return autoScroll_.stop();
  if (!autoScroll_.isActive()) autoScroll_.start();
}

void ArrangementGestures::autoScroll() {
  const QPointF step = autoScrollStep(dragPointer_, state_.viewport().viewportSize);
  state_.changeViewport([&](TimelineViewport& viewport) { viewport.scrollBy(step); });
  dragClip();
}

/// The document changes first, so that the clip doesn't jump back for a frame.
void ArrangementGestures::dragEnded() {
  if (const auto change = state_.dragChange()) model_.changeClip(change->clipID, change->edit);
  stopDrag();
}

void ArrangementGestures::dragCancelled() { stopDrag(); }

void ArrangementGestures::stopDrag() {
  autoScroll_.stop();
  if (std::exchange(dragKind_, DragKind::none) == DragKind::clip) state_.endDrag();
}

Qt::CursorShape ArrangementGestures::cursorAt(const QPointF& point) {
  if (!state_.editsClips) return Qt::OpenHandCursor;
  const QPointF content = state_.viewport().toContent(point);
  const ClipBox* clip = clipAt(content);
  const bool isOnEdge = clip && ArrangementGeometry::isResize(content.x(), clip->startBeat, clip->lengthBeats,
                                                              state_.viewport().pointsPerBeat());
  return isOnEdge ? Qt::SizeHorCursor : Qt::ArrowCursor;
}

// Zoom and scroll

void ArrangementGestures::resized(const QSizeF& size) {
  state_.changeViewport([&](TimelineViewport& viewport) {
    viewport.viewportSize = size;
    viewport.scrollTo(viewport.scrollOffset);
  });
}

void ArrangementGestures::pinched(double factor, const QPointF& center) {
  state_.changeViewport([&](TimelineViewport& viewport) { viewport.magnify(factor, center.x()); });
}

void ArrangementGestures::pinchEnded(const QPointF& center) {
  state_.changeViewport([&](TimelineViewport& viewport) { viewport.endMagnification(center.x()); });
}

void ArrangementGestures::zoomBy(double factor) {
  state_.changeViewport([&](TimelineViewport& viewport) {
    const double width = viewport.viewportSize.width();
    const double playhead =
        model_.transport().playhead() * viewport.pointsPerBeat() - viewport.scrollOffset.x();
    viewport.zoomTo(viewport.zoom * factor, playhead >= 0 && playhead < width ? playhead : width / 2);
  });
}

void ArrangementGestures::wheel(const QWheelEvent& event, const QPointF& position) {
  state_.changeViewport([&](TimelineViewport& viewport) {
    if (event.modifiers().testFlag(Qt::ControlModifier)) {
      const double factor = std::pow(ArrangementGeometry::zoomStep, notches(event));
      viewport.zoomTo(viewport.zoom * factor, position.x());
    } else {
      viewport.scrollBy(-distanceOf(event));
    }
  });
  if (dragKind_ == DragKind::clip) dragClip();
}

bool ArrangementGestures::nativeGesture(const QNativeGestureEvent& event, const QPointF& position) {
  switch (event.gestureType()) {
    case Qt::BeginNativeGesture:
      return true;
    case Qt::ZoomNativeGesture:
      pinched(state_.viewport().magnification * (1 + event.value()), position);
      return true;
    case Qt::EndNativeGesture:
      pinchEnded(position);
      return true;
    default:
      return false;
  }
}

// For screen readers

void ArrangementGestures::deleteClip(const UUID& clipID) {
  model_.selectClip(clipID);
  model_.deleteSelectedClip();
}

QString ArrangementGestures::trackName(const UUID& trackID) {
  const Track* track = model_.song().track(trackID);
  return track ? QString::fromStdString(track->name) : QStringLiteral("track");
}

}  // namespace velmora
