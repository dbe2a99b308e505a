#include "Velmora/Theme/PopoverPlace.h"

#include <algorithm>

namespace velmora {

QPoint popoverPlace(const QRect& anchor, const QSize& size, const QRect& screen) {
  constexpr int gap = 6;
  const int roomAbove = anchor.top() - screen.top();
  const int roomBelow = screen.bottom() - anchor.bottom();
  const int x = anchor.center().x() - size.width() / 2;
  const int y = roomAbove >= roomBelow ? anchor.top() - gap - size.height() : anchor.bottom() + 1 + gap;
  const QPoint last = screen.bottomRight() + QPoint(1, 1) - QPoint(size.width(), size.height());
  return {std::max(screen.left(), std::min(x, last.x())), std::max(screen.top(), std::min(y, last.y()))};
}

}  // namespace velmora
