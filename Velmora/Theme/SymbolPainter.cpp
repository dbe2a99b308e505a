#include "Velmora/Theme/SymbolPainter.h"

#include <QTransform>
#include <cmath>

#include "Velmora/Theme/Symbols.h"

namespace velmora {
namespace {

bool isWhole(double value) { return std::abs(value - std::round(value)) < 1e-6; }

double toWhole(double value) { return std::round(value) - value; }

/// Moves an origin between two pixels onto one; a box of a broken size stays where it is.
void moveToWholePixel(QPainter& painter, double boxSize) {
  const QTransform toDevice = painter.deviceTransform();
  const double scale = toDevice.m11();
  if (toDevice.type() > QTransform::TxScale || !isWhole(boxSize * scale)) return;
  painter.translate(toWhole(toDevice.dx()) / scale, toWhole(toDevice.dy()) / scale);
}

}  // namespace

void paintSymbolBox(QPainter& painter, const QRectF& rect, const QString& name, const QColor& color,
                    double boxSize) {
  static Symbols symbols;
  const QPainterPath& outline = symbols.outline(name);
  if (outline.isEmpty()) return;
  painter.save();
  painter.translate(rect.center() - QPointF(boxSize, boxSize) / 2);
  moveToWholePixel(painter, boxSize);
  painter.scale(boxSize / Symbols::box, boxSize / Symbols::box);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(outline, color);
  painter.restore();
}

}  // namespace velmora
