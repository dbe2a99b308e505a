#pragma once

#include <QAccessible>
#include <QColor>
#include <QWidget>
#include <functional>
#include <optional>

#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Parts/KeyboardLead.h"
#include "Velmora/Studio/PianoRoll/NoteCommands.h"
#include "Velmora/Studio/PianoRoll/NoteDrag.h"
#include "Velmora/Studio/PianoRoll/NoteStamps.h"
#include "Velmora/Studio/PianoRoll/PianoRollGeometry.h"
#include "Velmora/Studio/PianoRoll/PianoRollKey.h"
#include "Velmora/Studio/PianoRoll/PianoRollScene.h"

class QNativeGestureEvent;

namespace velmora {

/// The drawing surface of the piano roll: notes are added, selected, moved and resized with the pointer, the
/// computer's keys or a screen reader.
///
/// A drag shows on this surface alone and changes the document at its end; Escape, another button or the loss
/// of the focus drops it. With editing off, and where a drag starts beside the notes, it scrolls.
class PianoRollCanvasView final : public QWidget {
 public:
  explicit PianoRollCanvasView(NoteCommands& commands, QWidget* parent = nullptr);

  // What the surroundings do; `x` is the pointer's place on this surface.
  std::function<void(float factor, double x)> onZoom = [](float, double) {};
  std::function<void(float factor, double x)> onPinch = [](float, double) {};
  std::function<void()> onPinchEnd = [] {};
  std::function<void(int octaves)> onOctave = [](int) {};
  std::function<void(QPointF points)> onPan = [](QPointF) {};
  std::function<void(QRectF area)> onReveal = [](QRectF) {};

  void showOctave(int octave);
  void setPointsPerBeat(double pointsPerBeat);
  void setEditsNotes(bool editsNotes);

  NoteCommands& commands() const { return commands_; }
  const PianoRollGeometry& roll() const { return roll_; }

  /// Where the arrow keys have come to.
  const PianoRollCell& cursor() const { return cursor_; }
  const Note* noteAtCursor() const;
  /// Brings the cursor, and with the focus a screen reader, to a note.
  void moveCursorTo(const UUID& noteID);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  /// The left button is down: a tap until it has moved, then a drag.
  struct Gesture {
    QPointF start;
    QPointF lastGlobal;
    std::optional<NoteDrag> noteDrag;
    bool hasMoved = false;
  };
  /// What the document shows here; a refresh without a difference does nothing.
  struct Shown {
    Pattern pattern{};
    QColor trackColor{};
    std::optional<UUID> selectedNoteID{};
    bool operator==(const Shown&) const = default;
  };
  using Act = void (PianoRollCanvasView::*)(const PianoRollKey&);

  void refresh();
  Shown current() const;
  void place();
  PianoRollScene scene() const;
  double keysLeft() const;
  bool isUnderKeys(QPointF point) const;

  std::optional<NoteDrag> noteDragAt(QPointF point) const;
  void drag(const QMouseEvent& event);
  void tap(QPointF point);
  void finish(const NoteDrag& drag);
  void cancelGesture();
  void updateDragged();
  void showHandle(QPointF point);
  bool pinch(const QNativeGestureEvent& event);

  bool claims(const QKeyEvent& event) const;
  void moveCursor(const PianoRollKey& key);
  void changeOctave(const PianoRollKey& key);
  void moveNote(const PianoRollKey& key);
  void resizeNote(const PianoRollKey& key);
  void changeVelocity(const PianoRollKey& key);
  void removeNote(const PianoRollKey& key);
  void activate(const PianoRollKey& key);
  void setCursorCell(const PianoRollCell& cell);

  void tell(QAccessibleEvent&& event, const UUID& noteID);
  void tellCursor();
  void tellDifference(const Shown& before);
  void tellChange(const Note& old, const Note& now);

  NoteCommands& commands_;
  PianoRollGeometry roll_;
  PianoRollCell cursor_;
  bool editsNotes_ = true;
  KeyboardLead lead_{*this};
  std::optional<Gesture> gesture_;
  Shown shown_;
  NoteStamps stamps_;
  ChangeListener listener_;
};

}  // namespace velmora
