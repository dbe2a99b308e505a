#include "Velmora/Studio/PianoRoll/PianoRollCanvasView.h"

#include <QApplication>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QWheelEvent>
#include <cmath>
#include <utility>

#include "Velmora/Studio/PianoRoll/AccessiblePianoRoll.h"
#include "Velmora/Studio/PianoRoll/PianoRollPainter.h"
#include "Velmora/Studio/PianoRoll/PianoRollZoom.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr double notch = 120;  // of a wheel, in eighths of a degree
constexpr double outlineReach = 3;

const Pattern& orNone(const Pattern* pattern) {
  static const Pattern none;
  return pattern ? *pattern : none;
}

}  // namespace

PianoRollCanvasView::PianoRollCanvasView(NoteCommands& commands, QWidget* parent)
    : QWidget(parent),
      commands_(commands),
      listener_([this] { refresh(); }, commands.model().song, commands.model().selectedNoteID) {
  AccessiblePianoRoll::install();
  setObjectName("piano.canvas");
  setAccessibleName(tr("Piano roll"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setEditsNotes(true);
  refresh();
  place();
}

// What is shown

PianoRollCanvasView::Shown PianoRollCanvasView::current() const {
  const Track* track = commands_.track();
  return {orNone(commands_.pattern()), track ? Theme::color(track->color) : QColor(),
          commands_.model().selectedNoteID()};
}

void PianoRollCanvasView::refresh() {
  const Shown before = std::exchange(shown_, current());
  if (shown_ == before) return;
  if (gesture_ && gesture_->noteDrag && !commands_.note(gesture_->noteDrag->noteID)) cancelGesture();
  place();
  update();
  if (QAccessible::isActive()) tellDifference(before);
}

void PianoRollCanvasView::place() {
  setMinimumSize(roll_.contentSize(shown_.pattern).toSize());
  cursor_ = roll_.moved(cursor_, 0, 0, shown_.pattern);
}

void PianoRollCanvasView::showOctave(int octave) {
  const int before = roll_.lowerPitch;
  roll_.showOctave(octave);
  cursor_.pitch += roll_.lowerPitch - before;
  place();
  update();
}

void PianoRollCanvasView::setPointsPerBeat(double pointsPerBeat) {
  roll_.pointsPerBeat = pointsPerBeat;
  place();
  update();
}

void PianoRollCanvasView::setEditsNotes(bool editsNotes) {
  cancelGesture();
  editsNotes_ = editsNotes;
  setProperty("keepsEditingKeys", editsNotes);
  lead_.setMayActivate(editsNotes);
  update();
}

double PianoRollCanvasView::keysLeft() const { return std::max(0, -x()); }

bool PianoRollCanvasView::isUnderKeys(QPointF point) const { return point.x() < keysLeft() + roll_.keyWidth; }

PianoRollScene PianoRollCanvasView::scene() const {
  PianoRollScene scene{.pattern = orNone(commands_.pattern()),
                       .trackColor = shown_.trackColor,
                       .selectedNoteID = commands_.model().selectedNoteID(),
                       .keysLeft = keysLeft()};
  if (gesture_ && gesture_->hasMoved) scene.drag = gesture_->noteDrag;
  if (lead_.showsCursor() && editsNotes_ && hasFocus()) scene.cursor = cursor_;
  return scene;
}

void PianoRollCanvasView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const PianoRollScene shown = scene();
  if (!stamps_.isFor(shown.trackColor, devicePixelRatioF())) {
    stamps_ = NoteStamps(shown.trackColor, roll_.rowHeight, devicePixelRatioF());
  }
  PianoRollPainter(painter, roll_, shown, stamps_, event->rect()).paint();
}

void PianoRollCanvasView::moveEvent(QMoveEvent* event) {
  if (event->pos().x() != event->oldPos().x()) update();
}

// The pointer

std::optional<NoteDrag> PianoRollCanvasView::noteDragAt(QPointF point) const {
  if (!editsNotes_ || isUnderKeys(point)) return {};
  return NoteDrag::begin(point, orNone(commands_.pattern()), roll_);
}

void PianoRollCanvasView::mousePressEvent(QMouseEvent* event) {
  lead_.mouseUsed();
  update();
  if (event->button() != Qt::LeftButton || gesture_) return cancelGesture();
  gesture_ = Gesture{event->position(), event->globalPosition(), noteDragAt(event->position())};
}

void PianoRollCanvasView::mouseMoveEvent(QMouseEvent* event) {
  if (!gesture_) return showHandle(event->position());
  if (!(event->buttons() & Qt::LeftButton)) return cancelGesture();  // the release went elsewhere
  const QPointF way = event->position() - gesture_->start;
  gesture_->hasMoved = gesture_->hasMoved || way.manhattanLength() >= QApplication::startDragDistance();
  if (gesture_->hasMoved) drag(*event);
}

void PianoRollCanvasView::drag(const QMouseEvent& event) {
  const QPointF moved = event.globalPosition() - std::exchange(gesture_->lastGlobal, event.globalPosition());
  if (!gesture_->noteDrag) return onPan(moved);
  updateDragged();
  gesture_->noteDrag->offset = event.position() - gesture_->start;
  updateDragged();
  onReveal({event.position(), QSizeF(1, 1)});
}

/// Repaints the dragged note's place and no more.
void PianoRollCanvasView::updateDragged() {
  if (!gesture_ || !gesture_->noteDrag) return;
  const Note* note = commands_.note(gesture_->noteDrag->noteID);
  if (!note) return;
  const auto around = [](const QRectF& rect) {
    return rect.adjusted(-outlineReach, -outlineReach, outlineReach, outlineReach).toAlignedRect();
  };
  update(around(roll_.noteRect(*note)));
  update(around(gesture_->noteDrag->rect(*note, roll_)));
}

void PianoRollCanvasView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !gesture_) return;
  const Gesture gesture = *std::exchange(gesture_, std::nullopt);
  update();
  if (!gesture.hasMoved) {
    tap(gesture.start);
  } else if (gesture.noteDrag) {
    finish(*gesture.noteDrag);
  }
}

void PianoRollCanvasView::tap(QPointF point) {
  if (!editsNotes_ || isUnderKeys(point) || !roll_.isOnGrid(point)) return;
  const Note* note = roll_.noteAt(point, orNone(commands_.pattern()));
  if (note) {
    commands_.select(note->id);
  } else {
    commands_.add(roll_.pitch(point.y()), roll_.beat(point.x()));
  }
  if (const Note* selected = commands_.selectedNote()) cursor_ = PianoRollCell::of(*selected);
}

void PianoRollCanvasView::finish(const NoteDrag& drag) {
  const Note* note = commands_.note(drag.noteID);
  if (!note) return;
  commands_.edit(drag.noteID, drag.result(*note, roll_));
  commands_.select(drag.noteID);
}

void PianoRollCanvasView::cancelGesture() {
  updateDragged();
  gesture_.reset();
}

void PianoRollCanvasView::showHandle(QPointF point) {
  const auto drag = noteDragAt(point);
  setCursor(drag && drag->kind == NoteDrag::Kind::resize ? Qt::SizeHorCursor : Qt::ArrowCursor);
}

void PianoRollCanvasView::hideEvent(QHideEvent* event) {
  cancelGesture();
  QWidget::hideEvent(event);
}

void PianoRollCanvasView::wheelEvent(QWheelEvent* event) {
  if (!(event->modifiers() & Qt::ControlModifier)) return event->ignore();
  const double notches = event->angleDelta().y() / notch;
  onZoom(static_cast<float>(std::pow(static_cast<double>(PianoRollZoom::step), notches)),
         event->position().x());
  event->accept();
}

bool PianoRollCanvasView::pinch(const QNativeGestureEvent& event) {
  if (event.gestureType() == Qt::ZoomNativeGesture) {
    onPinch(1 + static_cast<float>(event.value()), event.position().x());
  } else if (event.gestureType() == Qt::EndNativeGesture) {
    onPinchEnd();
  }
  return true;
}

bool PianoRollCanvasView::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::NativeGesture:
      return pinch(*static_cast<QNativeGestureEvent*>(event));
    case QEvent::ShortcutOverride:
      event->setAccepted(claims(*static_cast<QKeyEvent*>(event)));
      return true;
    default:
      return QWidget::event(event);
  }
}

}  // namespace velmora
