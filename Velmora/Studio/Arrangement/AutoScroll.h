#pragma once

#include <QPointF>
#include <QSizeF>

namespace velmora {

/// How far a view scrolls in one frame while a drag is near or beyond its edges.
QPointF autoScrollStep(const QPointF& pointer, const QSizeF& viewport);

}  // namespace velmora
