#include "Velmora/Studio/Arrangement/AccessibleCanvas.h"

#include <algorithm>

#include "Velmora/Studio/Arrangement/AccessibleClip.h"
#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"

namespace velmora {

void AccessibleCanvas::install() { installAccessible<ArrangementCanvas, AccessibleCanvas>(); }

AccessibleCanvas::~AccessibleCanvas() {
  for (QAccessible::Id id : clips_) {
    if (id) QAccessible::deleteAccessibleInterface(id);
  }
}

ArrangementCanvas& AccessibleCanvas::canvas() const { return *static_cast<ArrangementCanvas*>(object()); }

int AccessibleCanvas::childCount() const { return canvas().content().data.clipCount(); }

QAccessibleInterface* AccessibleCanvas::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  const auto place = static_cast<std::size_t>(index);
  if (clips_.size() <= place) clips_.resize(place + 1, 0);
  QAccessible::Id& id = clips_[place];
  if (!id) id = QAccessible::registerAccessibleInterface(new AccessibleClip(&canvas(), index));
  return QAccessible::accessibleInterface(id);
}

QAccessibleInterface* AccessibleCanvas::childAt(int x, int y) const {
  const CanvasContent& shown = canvas().content();
  const QPointF point = canvas().mapFromGlobal(QPointF(x, y)) + shown.scrollOffset;
  const auto row = ArrangementGeometry::row(point.y(), shown.data.trackCount());
  const ClipBox* clip = row ? shown.data.clipAt(*row, point.x() / shown.pointsPerBeat) : nullptr;
  if (!clip) return nullptr;
  const auto index = clip - &shown.data.lane(*row).clips.front();
  return child(shown.data.numberOf({*row, static_cast<int>(index)}));
}

QAccessibleInterface* AccessibleCanvas::focusChild() const {
  const auto place = canvas().selectedClip();
  return place && canvas().hasFocus() ? child(canvas().content().data.numberOf(*place)) : nullptr;
}

int AccessibleCanvas::indexOfChild(const QAccessibleInterface* child) const {
  const auto* clip = dynamic_cast<const AccessibleClip*>(child);
  return clip && clip->parent() == this ? clip->index() : -1;
}

}  // namespace velmora
