#include "Velmora/Studio/Arrangement/ClipShape.h"

#include <algorithm>
#include <array>

namespace velmora {

/// Each corner is one curve that leaves the side earlier than a circle would and meets it at the diagonal.
QPainterPath clipShape(const QRectF& rect, double cornerRadius) {
  const double reach = std::min({1.28 * cornerRadius, rect.width() / 2, rect.height() / 2});
  const double pull = reach * 0.335;  // distance of the control points from the corner
  const auto [left, top, right, bottom] =
      std::array{rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height()};
  QPainterPath path(QPointF(left + reach, top));
  path.lineTo(right - reach, top);
  path.cubicTo(right - pull, top, right, top + pull, right, top + reach);
  path.lineTo(right, bottom - reach);
  path.cubicTo(right, bottom - pull, right - pull, bottom, right - reach, bottom);
  path.lineTo(left + reach, bottom);
  path.cubicTo(left + pull, bottom, left, bottom - pull, left, bottom - reach);
  path.lineTo(left, top + reach);
  path.cubicTo(left, top + pull, left + pull, top, left + reach, top);
  path.closeSubpath();
  return path;
}

}  // namespace velmora
