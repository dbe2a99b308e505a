#pragma once

#include <QPainterPath>

namespace velmora {

/// A rectangle whose corners bend in gradually, as the outline of one continuous stroke.
QPainterPath clipShape(const QRectF& rect, double cornerRadius);

}  // namespace velmora
