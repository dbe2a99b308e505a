#include "Velmora/Studio/PianoRoll/PianoRollScrollArea.h"

#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr double pointsPerNotch = 60;
constexpr double notch = 120;  // in eighths of a degree

/// Scrolls no further than needed to show from `start` to `end`; the start goes first.
void bringIntoView(QScrollBar& bar, double start, double end) {
  const int least = static_cast<int>(std::ceil(end)) - bar.pageStep();
  bar.setValue(std::min(std::max(bar.value(), least), static_cast<int>(std::floor(start))));
}

double wheelPoints(const QWheelEvent& event) {
  const QPoint pixels = event.pixelDelta();
  const QPoint angle = event.angleDelta();
  const double turned = (angle.y() != 0 ? angle.y() : angle.x()) * pointsPerNotch / notch;
  return pixels.isNull() ? turned : pixels.y() != 0 ? pixels.y() : pixels.x();
}

}  // namespace

PianoRollScrollArea::PianoRollScrollArea(PianoRollCanvasView* canvas, QWidget* parent)
    : QScrollArea(parent), canvas_(*canvas) {
  setWidget(canvas);
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  canvas->onPan = [this](QPointF points) { pan(points); };
  canvas->onReveal = [this](const QRectF& area) { reveal(area); };
}

void PianoRollScrollArea::setPointsPerBeat(double pointsPerBeat, double x) {
  const double beat = canvas_.roll().beat(x);
  const double fromLeft = x - horizontalScrollBar()->value();
  canvas_.setPointsPerBeat(pointsPerBeat);
  horizontalScrollBar()->setValue(qRound(canvas_.roll().x(beat) - fromLeft));
}

void PianoRollScrollArea::setPointsPerBeat(double pointsPerBeat) {
  setPointsPerBeat(pointsPerBeat, horizontalScrollBar()->value() + canvas_.roll().keyWidth);
}

void PianoRollScrollArea::pan(QPointF points) {
  horizontalScrollBar()->setValue(qRound(horizontalScrollBar()->value() - points.x()));
  verticalScrollBar()->setValue(qRound(verticalScrollBar()->value() - points.y()));
}

/// The names of the pitches cover the left end.
void PianoRollScrollArea::reveal(const QRectF& area) {
  bringIntoView(*horizontalScrollBar(), area.left() - canvas_.roll().keyWidth, area.right());
  bringIntoView(*verticalScrollBar(), area.top(), area.bottom());
}

/// With Shift, or where all rows show, a wheel scrolls sideways.
void PianoRollScrollArea::wheelEvent(QWheelEvent* event) {
  const bool isSideways = event->modifiers() & Qt::ShiftModifier || verticalScrollBar()->maximum() == 0;
  if (!isSideways) return QScrollArea::wheelEvent(event);
  pan({wheelPoints(*event), 0});
  event->accept();
}

}  // namespace velmora
