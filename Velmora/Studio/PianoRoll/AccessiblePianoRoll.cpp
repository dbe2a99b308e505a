#include "Velmora/Studio/PianoRoll/AccessiblePianoRoll.h"

#include <unordered_set>

#include "Velmora/Studio/PianoRoll/AccessibleNote.h"
#include "Velmora/Studio/PianoRoll/PitchName.h"

namespace velmora {

namespace {

void tell(QAccessible::Event what, QAccessibleInterface* child) {
  QAccessibleEvent event(child, what);
  QAccessible::updateAccessibility(&event);
}

}  // namespace

AccessiblePianoRoll::AccessiblePianoRoll(PianoRollCanvasView* canvas)
    : QAccessibleWidget(canvas, QAccessible::Grouping), toldCount_(childCount()) {}

void AccessiblePianoRoll::install() { installAccessible<PianoRollCanvasView, AccessiblePianoRoll>(); }

AccessiblePianoRoll::~AccessiblePianoRoll() {
  for (const auto& [noteID, id] : children_) QAccessible::deleteAccessibleInterface(id);
}

PianoRollCanvasView& AccessiblePianoRoll::canvas() const {
  return *static_cast<PianoRollCanvasView*>(object());
}

const SharedList<Note>& AccessiblePianoRoll::notes() const {
  static const SharedList<Note> none;
  const Pattern* pattern = canvas().commands().pattern();
  return pattern ? pattern->notes : none;
}

void AccessiblePianoRoll::notesChanged() {
  forgetRemoved();
  for (int i = toldCount_; i < childCount(); ++i) tell(QAccessible::ObjectCreated, child(i));
  toldCount_ = childCount();
}

void AccessiblePianoRoll::forgetRemoved() {
  std::unordered_set<UUID> present;
  for (const Note& note : notes()) present.insert(note.id);
  std::erase_if(children_, [&](const auto& entry) {
    const auto& [noteID, id] = entry;
    if (present.contains(noteID)) return false;
    tell(QAccessible::ObjectDestroyed, QAccessible::accessibleInterface(id));
    QAccessible::deleteAccessibleInterface(id);
    return true;
  });
}

int AccessiblePianoRoll::childCount() const { return static_cast<int>(notes().size()); }

QAccessibleInterface* AccessiblePianoRoll::child(int index) const {
  return index < 0 || index >= childCount() ? nullptr : childFor(&notes()[static_cast<std::size_t>(index)]);
}

QAccessibleInterface* AccessiblePianoRoll::childFor(const Note* note) const {
  if (!note) return nullptr;
  const auto [entry, isNew] = children_.try_emplace(note->id);
  if (isNew)
    entry->second = QAccessible::registerAccessibleInterface(new AccessibleNote(&canvas(), note->id));
  return QAccessible::accessibleInterface(entry->second);
}

QAccessibleInterface* AccessiblePianoRoll::childAt(int x, int y) const {
  const Pattern* pattern = canvas().commands().pattern();
  return pattern ? childFor(canvas().roll().noteAt(canvas().mapFromGlobal(QPointF(x, y)), *pattern))
                 : nullptr;
}

QAccessibleInterface* AccessiblePianoRoll::focusChild() const {
  return canvas().hasFocus() ? childFor(canvas().noteAtCursor()) : nullptr;
}

int AccessiblePianoRoll::indexOfChild(const QAccessibleInterface* child) const {
  const auto* known = dynamic_cast<const AccessibleNote*>(child);
  const Note* note = known ? findByID(notes(), known->noteID()) : nullptr;
  return note ? static_cast<int>(note - notes().items().data()) : -1;
}

/// The description follows the cursor, as an empty cell has no child that could be told.
QString AccessiblePianoRoll::text(QAccessible::Text type) const {
  if (type != QAccessible::Description) return QAccessibleWidget::text(type);
  const PianoRollCell& cursor = canvas().cursor();
  return PianoRollCanvasView::tr("Cursor at %1, beat %2. Return adds or selects a note.")
      .arg(pitchName(cursor.pitch))
      .arg(cursor.startBeat() + 1, 0, 'f', 2);
}

}  // namespace velmora
