#include <QFocusEvent>
#include <QKeyEvent>
#include <algorithm>
#include <array>

#include "Velmora/Studio/PianoRoll/AccessiblePianoRoll.h"
#include "Velmora/Studio/PianoRoll/PianoRollCanvasView.h"

namespace velmora {

// The focus

void PianoRollCanvasView::focusInEvent(QFocusEvent* event) {
  if (lead_.focusCame(*event) && lead_.showsCursor()) onReveal(roll_.cellRect(cursor_));
  update();
  tellCursor();
}

void PianoRollCanvasView::focusOutEvent(QFocusEvent*) {
  cancelGesture();
  update();
}

// The keys

bool PianoRollCanvasView::claims(const QKeyEvent& event) const {
  if (gesture_) return event.key() == Qt::Key_Escape;
  const PianoRollKey* key = PianoRollKey::of(event);
  return key && editsNotes_ && (key->act != PianoRollKey::Act::activate || lead_.cameByTab());
}

void PianoRollCanvasView::keyPressEvent(QKeyEvent* event) {
  static constexpr std::array<Act, 7> acts{
      &PianoRollCanvasView::moveCursor,     &PianoRollCanvasView::changeOctave,
      &PianoRollCanvasView::moveNote,       &PianoRollCanvasView::resizeNote,
      &PianoRollCanvasView::changeVelocity, &PianoRollCanvasView::removeNote,
      &PianoRollCanvasView::activate};
  if (!claims(*event)) return event->ignore();
  if (gesture_) return cancelGesture();
  lead_.keyUsed();
  const PianoRollKey& key = *PianoRollKey::of(*event);
  (this->*acts.at(static_cast<std::size_t>(key.act)))(key);
}

void PianoRollCanvasView::moveCursor(const PianoRollKey& key) {
  if (const Pattern* pattern = commands_.pattern()) {
    setCursorCell(roll_.moved(cursor_, key.steps, key.semitones, *pattern));
  }
}

void PianoRollCanvasView::changeOctave(const PianoRollKey& key) {
  onOctave(key.steps);
  setCursorCell(cursor_);
}

void PianoRollCanvasView::moveNote(const PianoRollKey& key) {
  const Note* note = commands_.selectedNote();
  if (!note) return;
  const UUID noteID = note->id;
  key.steps == 0 ? commands_.transpose(noteID, key.semitones)
                 : commands_.shift(noteID, key.steps * stepLengthBeats);
  moveCursorTo(noteID);
}

void PianoRollCanvasView::resizeNote(const PianoRollKey& key) {
  if (const Note* note = commands_.selectedNote()) {
    commands_.lengthen(note->id, key.steps * stepLengthBeats);
  }
}

void PianoRollCanvasView::changeVelocity(const PianoRollKey& key) {
  if (const Note* note = commands_.selectedNote()) {
    commands_.setVelocity(note->id, note->velocity + key.steps);
  }
}

void PianoRollCanvasView::removeNote(const PianoRollKey&) { commands_.removeSelected(); }

void PianoRollCanvasView::activate(const PianoRollKey&) {
  if (const Note* note = noteAtCursor()) return commands_.select(note->id);
  commands_.add(cursor_.pitch, cursor_.startBeat());
}

// The cursor

const Note* PianoRollCanvasView::noteAtCursor() const {
  const Pattern* pattern = commands_.pattern();
  return pattern ? cursor_.note(*pattern) : nullptr;
}

void PianoRollCanvasView::setCursorCell(const PianoRollCell& cell) {
  cursor_ = cell;
  update();
  onReveal(roll_.cellRect(cell));
  tellCursor();
}

void PianoRollCanvasView::moveCursorTo(const UUID& noteID) {
  const Note* note = commands_.note(noteID);
  if (note && roll_.shows(note->pitch)) setCursorCell(PianoRollCell::of(*note));
}

// What a screen reader hears

void PianoRollCanvasView::tell(QAccessibleEvent&& event, const UUID& noteID) {
  const Pattern* pattern = commands_.pattern();
  const Note* note = commands_.note(noteID);
  if (!note) return;
  event.setChild(static_cast<int>(note - pattern->notes.items().data()));
  QAccessible::updateAccessibility(&event);
}

void PianoRollCanvasView::tellCursor() {
  if (!hasFocus() || !QAccessible::isActive()) return;
  if (const Note* note = noteAtCursor()) return tell({this, QAccessible::Focus}, note->id);
  for (const auto what : {QAccessible::DescriptionChanged, QAccessible::Focus}) {
    QAccessibleEvent event(this, what);
    QAccessible::updateAccessibility(&event);
  }
}

void PianoRollCanvasView::tellDifference(const Shown& before) {
  if (auto* seen = dynamic_cast<AccessiblePianoRoll*>(QAccessible::queryAccessibleInterface(this))) {
    seen->notesChanged();
  }
  const auto& old = before.pattern.notes;
  const auto& now = shown_.pattern.notes;
  for (std::size_t i = 0; i < std::min(old.size(), now.size()); ++i) {
    if (old[i].id == now[i].id && old[i] != now[i]) tellChange(old[i], now[i]);
  }
}

/// The velocity is told of the note at the cursor only, which may be the one that a key has just changed.
void PianoRollCanvasView::tellChange(const Note& old, const Note& now) {
  if (old.pitch != now.pitch || old.startBeat != now.startBeat)
    tell({this, QAccessible::NameChanged}, now.id);
  const Note* focused = hasFocus() ? noteAtCursor() : nullptr;
  if (old.velocity != now.velocity && focused && focused->id == now.id) {
    tell({this, QAccessible::DescriptionChanged}, now.id);
  }
}

}  // namespace velmora
