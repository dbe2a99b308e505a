#include "Velmora/Theme/Paint.h"

#include <QPixmapCache>
#include <QWidget>
#include <cmath>
#include <numbers>

#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

/// A rounded rectangle about the origin.
struct RoundedShape {
  QSizeF size;
  double cornerRadius = 0;

  /// Positive outside.
  double distance(const QPointF& point) const {
    const double x = std::abs(point.x()) - size.width() / 2 + cornerRadius;
    const double y = std::abs(point.y()) - size.height() / 2 + cornerRadius;
    const double outside = std::hypot(std::max(x, 0.0), std::max(y, 0.0));
    return outside + std::min(std::max(x, y), 0.0) - cornerRadius;
  }
};

/// What a Gaussian blur of an edge leaves at a distance from it, 0 to 1.
double blurredEdge(double distance, double reach) {
  const double sigma = reach / 2;
  return std::erfc(distance / (sigma * std::numbers::sqrt2)) / 2;
}

QImage glowImage(const RoundedShape& shape, const QColor& color, double reach, double scale) {
  const double margin = glowMargin(reach);
  const QSizeF size = (shape.size + QSizeF(2 * margin, 2 * margin)) * scale;
  QImage image(size.toSize(), QImage::Format_ARGB32);
  const QPointF middle(image.width() / 2.0, image.height() / 2.0);
  for (int y = 0; y < image.height(); ++y) {
    auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      const double light = blurredEdge(shape.distance((QPointF(x + 0.5, y + 0.5) - middle) / scale), reach);
      line[x] = qRgba(color.red(), color.green(), color.blue(), qRound(color.alpha() * light));
    }
  }
  image.setDevicePixelRatio(scale);
  return image;
}

QPixmap glowPixmap(const RoundedShape& shape, const QColor& color, double reach, double scale) {
  const QString key = QStringLiteral("glow %1 %2 %3 %4 %5 %6")
                          .arg(shape.size.width())
                          .arg(shape.size.height())
                          .arg(shape.cornerRadius)
                          .arg(color.name(QColor::HexArgb))
                          .arg(reach)
                          .arg(scale);
  QPixmap pixmap;
  if (!QPixmapCache::find(key, &pixmap)) {
    pixmap = QPixmap::fromImage(glowImage(shape, color, reach, scale));
    QPixmapCache::insert(key, pixmap);
  }
  return pixmap;
}

}  // namespace

void paintPanel(QPainter& painter, const QRectF& rect, double radius, const QColor& fill,
                const QColor& outline) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(fill);
  if (fill.alpha() > 0) painter.drawRoundedRect(rect, radius, radius);
  painter.setPen(outline);
  painter.setBrush(Qt::NoBrush);
  const double inner = std::max(radius - 0.5, 0.0);
  if (outline.alpha() > 0) painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), inner, inner);
  painter.restore();
}

void paintFocusRing(QPainter& painter, const QRectF& rect, double radius) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(Theme::ink, 2));
  painter.drawRoundedRect(rect.adjusted(3, 3, -3, -3), radius - 3, radius - 3);
  painter.setPen(QPen(Theme::accent, 2));
  painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
  painter.restore();
}

void paintGlow(QPainter& painter, const QRectF& shape, double cornerRadius, const QColor& color,
               double reach) {
  const double margin = glowMargin(reach);
  const QPixmap pixmap =
      glowPixmap({shape.size(), cornerRadius}, color, reach, painter.device()->devicePixelRatioF());
  painter.drawPixmap(shape.topLeft() - QPointF(margin, margin), pixmap);
}

int glowMargin(double reach) { return static_cast<int>(std::ceil(1.5 * reach)); }

QPixmap pictureOf(const QWidget& widget) {
  QPixmap picture(widget.size() * widget.devicePixelRatioF());
  picture.setDevicePixelRatio(widget.devicePixelRatioF());
  picture.fill(Qt::transparent);
  return picture;
}

bool isPictureOf(const QWidget& widget, const QPixmap& picture) {
  const double scale = widget.devicePixelRatioF();
  return picture.devicePixelRatio() == scale && picture.size() == widget.size() * scale;
}

bool hasKeyboardFocus(const QWidget& widget) {
  return widget.hasFocus() && widget.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

}  // namespace velmora
