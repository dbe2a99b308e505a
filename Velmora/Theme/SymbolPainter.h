#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QString>

namespace velmora {

/// Draws the symbol with its box `boxSize` logical pixels wide and high, in the middle of the rectangle and,
/// where the scale allows, on whole pixels.
void paintSymbolBox(QPainter& painter, const QRectF& rect, const QString& name, const QColor& color,
                    double boxSize);

}  // namespace velmora
