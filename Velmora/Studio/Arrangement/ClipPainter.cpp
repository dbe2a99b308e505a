#include "Velmora/Studio/Arrangement/ClipPainter.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Velmora/Studio/Arrangement/ClipShape.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr double cornerRadius = 6;
constexpr double fillOpacity = 0.85;
constexpr double bodyInset = 1.5;   // from a whole pixel, so that outlines of width 1 are sharp
constexpr double longestBody = 45;  // longer clips are this one with its middle drawn out
constexpr double beyond = 96;       // ends that are this far out of view needn't be where they are
constexpr qsizetype mostBodies = 512;
constexpr qsizetype mostNames = 1024;
constexpr double longestName = 1000;
constexpr QPointF nameOffset{8, 6};  // from the frame's corner
constexpr double nameEnd = 4;        // where it is cut, from the frame's right edge

/// Around the frame, so that the outline fits; whole pixels.
double marginAt(double pixelsPerPoint) { return std::ceil(2 * pixelsPerPoint) / pixelsPerPoint; }

QPen outlinePen(bool isSelected) {
  return isSelected ? QPen(QColor(Qt::white), 2) : QPen(Theme::withOpacity(Qt::white, 0.18), 1);
}

void paintGrip(QPainter& painter, const QRectF& frame) {
  const QRectF grip(frame.right() - 6, frame.top() + 12, 3, frame.height() - 24);
  painter.fillRect(grip & frame, Qt::white);
}

/// A line where each repetition of the pattern begins.
void paintTileLines(QPainter& painter, const PlacedClip& clip, const QRectF& area) {
  const double tile = clip.box.tileLength.value_or(0);
  const double end = clip.box.lengthBeats - 0.000000001;
  if (!(tile > 0) || tile >= end) return;
  const double pixelsPerPoint = painter.device()->devicePixelRatioF();
  const double left = clip.frame.left() - bodyInset;
  const QRectF visible = clip.frame & area;
  const double firstBeat = (visible.left() - 1 - left) / clip.pointsPerBeat;
  const QColor color = Theme::withOpacity(Qt::black, 0.22);
  for (double k = std::max(1.0, std::floor(firstBeat / tile)); k * tile < end; ++k) {
    const double x = left + std::round(k * tile * clip.pointsPerBeat * pixelsPerPoint) / pixelsPerPoint;
    if (x > visible.right()) return;
    painter.fillRect(QRectF(x, clip.frame.top() + 4, 1, clip.frame.height() - 8) & visible, color);
  }
}

QPixmap makeBody(const QSizeF& size, const QColor& color, bool isSelected, double pixelsPerPoint) {
  const QPointF origin(bodyInset + marginAt(pixelsPerPoint), marginAt(pixelsPerPoint));
  const QSizeF whole = size + QSizeF(2 * origin.x(), 2 * origin.y());
  QPixmap pixmap((whole * pixelsPerPoint).toSize());
  pixmap.setDevicePixelRatio(pixelsPerPoint);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPainterPath shape = clipShape(QRectF(origin, size), cornerRadius);
  painter.fillPath(shape, Theme::withOpacity(color, fillOpacity));
  painter.strokePath(shape, outlinePen(isSelected));
  return pixmap;
}

/// The text half a point right of the left edge, as names stand half a point right of a pixel.
QPixmap makeName(const QString& text, double pixelsPerPoint) {
  const QFont font = Theme::font(Theme::Text::label);
  const QFontMetricsF metrics(font);
  const QString shown = metrics.elidedText(text, Qt::ElideRight, longestName);
  const QSizeF size(metrics.horizontalAdvance(shown) + 2, metrics.height());
  const auto pixels = [=](double points) { return static_cast<int>(std::ceil(points * pixelsPerPoint)); };
  QPixmap pixmap(pixels(size.width()), pixels(size.height()));
  pixmap.setDevicePixelRatio(pixelsPerPoint);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setFont(font);
  painter.setPen(Theme::withOpacity(Theme::ink, 0.9));
  painter.drawText(QPointF(0.5, metrics.ascent()), shown);
  return pixmap;
}

/// Both ends as they are, and a column of pixels drawn out between them.
void drawStretched(QPainter& painter, const QRectF& place, const QPixmap& pixmap) {
  const int half = pixmap.width() / 2;
  const double end = half / pixmap.devicePixelRatio();
  const QRectF source(0, 0, half, pixmap.height());
  const QRectF left(place.topLeft(), QSizeF(end, place.height()));
  const QRectF right(place.right() - end, place.top(), end, place.height());
  painter.drawPixmap(left, pixmap, source);
  painter.drawPixmap(QRectF(left.topRight(), right.bottomLeft()), pixmap,
                     {half - 1.0, 0, 1, source.height()});
  painter.drawPixmap(right, pixmap, source.translated(pixmap.width() - half, 0));
}

}  // namespace

void ClipPainter::begin(double pixelsPerPoint) {
  if (std::exchange(pixelsPerPoint_, pixelsPerPoint) == pixelsPerPoint) return;
  bodies_.clear();
  names_.clear();
}

void ClipPainter::paint(QPainter& painter, const PlacedClip& clip, const QRectF& area) {
  paintBody(painter, clip, area);
  if (clip.isSelected) paintGrip(painter, clip.frame);
  paintTileLines(painter, clip, area);
  paintName(painter, clip, area);
}

void ClipPainter::paintBody(QPainter& painter, const PlacedClip& clip, const QRectF& area) {
  const double margin = marginAt(pixelsPerPoint_);
  const QRectF frame = clip.frame & area.adjusted(-beyond, -beyond, beyond, beyond);
  if (frame.isEmpty()) return;
  const QPixmap& pixmap = body(clip, std::min(frame.width(), longestBody));
  const QRectF place = frame.adjusted(-bodyInset - margin, -margin, bodyInset + margin, margin);
  if (frame.width() > longestBody) {
    drawStretched(painter, place, pixmap);
  } else {
    painter.drawPixmap(place.topLeft(), pixmap);
  }
}

const QPixmap& ClipPainter::body(const PlacedClip& clip, double width) {
  if (bodies_.size() > mostBodies) bodies_.clear();
  const auto pixels = static_cast<quint64>(std::lround(width * pixelsPerPoint_));
  const quint64 key = quint64{clip.color.rgb()} << 32 | pixels << 1 | (clip.isSelected ? 1 : 0);
  const auto known = bodies_.constFind(key);
  if (known != bodies_.constEnd()) return *known;
  const QSizeF size(width, clip.frame.height());
  return *bodies_.insert(key, makeBody(size, clip.color, clip.isSelected, pixelsPerPoint_));
}

/// The name as far as there is room, on whole pixels.
void ClipPainter::paintName(QPainter& painter, const PlacedClip& clip, const QRectF& area) {
  const double scale = pixelsPerPoint_;
  const auto floored = [scale](double points) { return std::floor(points * scale) / scale; };
  const QPointF place(floored(clip.frame.left() + nameOffset.x()),
                      floored(clip.frame.top() + nameOffset.y()));
  const double room = floored(clip.frame.right() - nameEnd - place.x());
  if (room <= 0 || !clip.frame.intersects(area)) return;
  const QPixmap& name = nameOf(clip.box.name);
  const QSizeF size(std::min(room, name.width() / scale), name.height() / scale);
  if (place.x() + size.width() < area.left()) return;
  painter.drawPixmap(QRectF(place, size), name, QRectF({}, size * scale));
}

const QPixmap& ClipPainter::nameOf(const QString& text) {
  const auto known = names_.constFind(text);
  if (known != names_.constEnd()) return *known;
  if (names_.size() > mostNames) names_.clear();
  return *names_.insert(text, makeName(text, pixelsPerPoint_));
}

}  // namespace velmora
