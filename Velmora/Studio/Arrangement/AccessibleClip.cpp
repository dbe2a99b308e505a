#include "Velmora/Studio/Arrangement/AccessibleClip.h"

#include "Velmora/Studio/Arrangement/BeatText.h"

namespace velmora {

namespace {

const QString deleteAction = QStringLiteral("Delete");

}  // namespace

std::optional<ClipPlace> AccessibleClip::place() const {
  return canvas_ ? canvas_->content().data.placeOf(index_) : std::nullopt;
}

QAccessibleInterface* AccessibleClip::parent() const {
  return QAccessible::queryAccessibleInterface(canvas_);
}

QWindow* AccessibleClip::window() const {
  const QAccessibleInterface* canvas = parent();
  return canvas ? canvas->window() : nullptr;
}

QString AccessibleClip::label() const {
  const LaneData& data = canvas_->content().data;
  const QString track = canvas_->responder().trackName(data.lane(place()->row).id);
  return QStringLiteral("Clip on %1, beat %2").arg(track, beatText(data.clip(*place()).startBeat + 1));
}

QString AccessibleClip::text(QAccessible::Text type) const {
  if (!isValid()) return {};
  if (type == QAccessible::Name) return label();
  return type == QAccessible::Description ? canvas_->content().data.clip(*place()).name : QString();
}

QRect AccessibleClip::rect() const {
  if (!isValid()) return {};
  const QRect frame = canvas_->frameOf(*place()).toAlignedRect();
  return {canvas_->mapToGlobal(frame.topLeft()), frame.size()};
}

QAccessible::State AccessibleClip::state() const {
  QAccessible::State state;
  state.invalid = !isValid();
  if (state.invalid) return state;
  state.selectable = true;
  state.focusable = true;
  state.selected = canvas_->content().selectedClipID == canvas_->content().data.clip(*place()).id;
  state.focused = state.selected && canvas_->hasFocus();
  state.offscreen = !canvas_->frameOf(*place()).intersects(canvas_->rect());
  state.invisible = !canvas_->isVisible();
  return state;
}

void* AccessibleClip::interface_cast(QAccessible::InterfaceType type) {
  return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList AccessibleClip::actionNames() const {
  return isValid() ? QStringList{pressAction(), deleteAction, setFocusAction()} : QStringList();
}

void AccessibleClip::doAction(const QString& name) {
  if (!actionNames().contains(name)) return;
  const UUID clipID = canvas_->content().data.clip(*place()).id;
  if (name == deleteAction) return canvas_->responder().deleteClip(clipID);
  if (name == setFocusAction()) canvas_->setFocus();
  canvas_->responder().selectClip(clipID);
}

QStringList AccessibleClip::keyBindingsForAction(const QString& name) const {
  return name == deleteAction ? QStringList{"Delete"} : QStringList();
}

}  // namespace velmora
