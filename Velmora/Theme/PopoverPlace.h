#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace velmora {

/// Where a popover's top left corner goes: above its anchor or, if there is more room, below it, in the
/// middle of it as far as the screen allows. All in global coordinates.
QPoint popoverPlace(const QRect& anchor, const QSize& size, const QRect& screen);

}  // namespace velmora
