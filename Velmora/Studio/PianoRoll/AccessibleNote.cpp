#include "Velmora/Studio/PianoRoll/AccessibleNote.h"

#include <algorithm>
#include <iterator>

#include "Velmora/Studio/PianoRoll/PitchName.h"

namespace velmora {

namespace {

struct ActionRow {
  QString name;
  void (*act)(PianoRollCanvasView& canvas, const UUID& noteID);
};

const auto& actionRows() {
  static const ActionRow rows[] = {
      {QAccessibleActionInterface::pressAction(),
       [](auto& canvas, auto& id) { canvas.commands().select(id); }},
      {"Delete", [](auto& canvas, auto& id) { canvas.commands().remove(id); }},
      {"Move up a semitone", [](auto& canvas, auto& id) { canvas.commands().transpose(id, 1); }},
      {"Move down a semitone", [](auto& canvas, auto& id) { canvas.commands().transpose(id, -1); }},
      {"Move earlier", [](auto& canvas, auto& id) { canvas.commands().shift(id, -stepLengthBeats); }},
      {"Move later", [](auto& canvas, auto& id) { canvas.commands().shift(id, stepLengthBeats); }},
      {QAccessibleActionInterface::setFocusAction(),
       [](auto& canvas, auto& id) {
         canvas.setFocus();
         canvas.moveCursorTo(id);
       }},
  };
  return rows;
}

}  // namespace

const Note* AccessibleNote::note() const { return canvas() ? canvas()->commands().note(noteID_) : nullptr; }

QString AccessibleNote::text(QAccessible::Text type) const {
  const Note* shown = note();
  if (!shown) return {};
  switch (type) {
    case QAccessible::Name:
      return PianoRollCanvasView::tr("%1, beat %2")
          .arg(pitchName(shown->pitch))
          .arg(shown->startBeat + 1, 0, 'f', 2);
    case QAccessible::Value:
      return QString::number(shown->velocity);
    case QAccessible::Description:
      return PianoRollCanvasView::tr("Velocity %1").arg(shown->velocity);
    default:
      return {};
  }
}

QRectF AccessibleNote::frame() const {
  const Note* shown = note();
  return shown ? canvas()->roll().noteRect(*shown) : QRectF();
}

QAccessible::State AccessibleNote::state() const {
  QAccessible::State state = AccessiblePart::state();
  const Note* shown = note();
  state.invalid = !shown;
  if (!shown) return state;
  state.invisible = state.invisible || !canvas()->roll().shows(shown->pitch);
  state.offscreen = !canvas()->visibleRegion().intersects(canvas()->roll().noteRect(*shown).toAlignedRect());
  state.selectable = true;
  state.selected = canvas()->commands().selectedNote() == shown;
  state.focused = canvas()->hasFocus() && canvas()->noteAtCursor() == shown;
  return state;
}

QStringList AccessibleNote::actionNames() const {
  QStringList names;
  if (!note() || !canvas()->isEnabled()) return names;
  for (const ActionRow& row : actionRows()) names << row.name;
  return names;
}

void AccessibleNote::doAction(const QString& name) {
  const auto* row = std::ranges::find(actionRows(), name, &ActionRow::name);
  if (row != std::end(actionRows()) && actionNames().contains(name)) row->act(*canvas(), noteID_);
}

QVariant AccessibleNote::currentValue() const {
  const Note* shown = note();
  return shown ? QVariant(int{shown->velocity}) : QVariant();
}

void AccessibleNote::setCurrentValue(const QVariant& value) {
  if (note() && canvas()->isEnabled()) canvas()->commands().setVelocity(noteID_, value.toInt());
}

}  // namespace velmora
