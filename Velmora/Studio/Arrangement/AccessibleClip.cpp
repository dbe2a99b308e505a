#include "Velmora/Studio/Arrangement/AccessibleClip.h"

#include "Velmora/Studio/Arrangement/BeatText.h"

namespace velmora {

namespace {

const QString deleteAction = QStringLiteral("Delete");

}  // namespace

std::optional<ClipPlace> AccessibleClip::place() const {
  return canvas() ? canvas()->content().data.placeOf(index_) : std::nullopt;
}

QString AccessibleClip::label() const {
  const LaneData& data = canvas()->content().data;
  const QString track = canvas()->responder().trackName(data.lane(place()->row).id);
  return QStringLiteral("Clip on %1, beat %2").arg(track, beatText(data.clip(*place()).startBeat + 1));
}

QString AccessibleClip::text(QAccessible::Text type) const {
  if (!isValid()) return {};
  if (type == QAccessible::Name) return label();
  return type == QAccessible::Description ? canvas()->content().data.clip(*place()).name : QString();
}

QAccessible::State AccessibleClip::state() const {
  QAccessible::State state = AccessiblePart::state();
  if (state.invalid) return state;
  state.selectable = true;
  state.selected = canvas()->content().selectedClipID == canvas()->content().data.clip(*place()).id;
  state.focused = state.selected && canvas()->hasFocus();
  state.offscreen = !frame().intersects(canvas()->rect());
  return state;
}

QStringList AccessibleClip::actionNames() const {
  return isValid() ? QStringList{pressAction(), deleteAction, setFocusAction()} : QStringList();
}

void AccessibleClip::doAction(const QString& name) {
  if (!actionNames().contains(name)) return;
  const UUID clipID = canvas()->content().data.clip(*place()).id;
  if (name == deleteAction) return canvas()->responder().deleteClip(clipID);
  if (name == setFocusAction()) canvas()->setFocus();
  canvas()->responder().selectClip(clipID);
}

QStringList AccessibleClip::keyBindingsForAction(const QString& name) const {
  return name == deleteAction ? QStringList{"Delete"} : QStringList();
}

}  // namespace velmora
