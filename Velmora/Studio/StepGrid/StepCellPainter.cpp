#include "Velmora/Studio/StepGrid/StepCellPainter.h"

#include <algorithm>
#include <cmath>

#include "Velmora/Studio/StepGrid/StepGridGeometry.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr double cornerRadius = 5;
constexpr double barRadius = 1.5;
constexpr std::size_t mostStamps = 12;  // of one page: three kinds in two widths and two heights

void paintMark(QPainter& painter, const QRectF& rect, double radius) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Theme::ink);
  painter.drawRoundedRect(rect, radius, radius);
}

}  // namespace

void StepCellPainter::begin(QPainter& painter, const QColor& color) {
  painter_ = &painter;
  const double scale = painter.device()->devicePixelRatioF();
  if (color == color_ && scale == scale_ && stamps_.size() <= mostStamps) return;
  color_ = color;
  scale_ = scale;
  stamps_.clear();
}

/// A page's width seldom divides evenly: every edge goes to the nearest pixel, so that all are sharp.
QRectF StepCellPainter::onPixels(const QRectF& rect) const {
  const auto snapped = [this](double x) { return std::round(x * scale_) / scale_; };
  return {QPointF(snapped(rect.left()), snapped(rect.top())),
          QPointF(snapped(rect.right()), snapped(rect.bottom()))};
}

void StepCellPainter::paint(const QRectF& cell, Beat beat, std::optional<int> velocity) {
  const QRectF rect = onPixels(cell);
  const Kind off = beat == Beat::light ? Kind::light : Kind::dark;
  painter_->drawPixmap(rect.topLeft(), stamp(velocity ? Kind::on : off, (rect.size() * scale_).toSize()));
  if (velocity) paintMark(*painter_, StepGridGeometry::velocityBar(rect, *velocity), barRadius);
}

const QPixmap& StepCellPainter::stamp(Kind kind, const QSize& pixels) {
  const auto fits = [&](const Stamp& stamp) { return stamp.kind == kind && stamp.pixels == pixels; };
  const auto found = std::ranges::find_if(stamps_, fits);
  if (found != stamps_.end()) return found->pixmap;
  return stamps_.emplace_back(Stamp{kind, pixels, draw(kind, pixels)}).pixmap;
}

QPixmap StepCellPainter::draw(Kind kind, const QSize& pixels) const {
  QPixmap pixmap(pixels);
  pixmap.setDevicePixelRatio(scale_);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  const QRectF cell({}, QSizeF(pixels) / scale_);
  if (kind == Kind::on) {
    paintPanel(painter, cell, cornerRadius, Theme::withOpacity(color_, 0.85), color_);
    const QRectF dot = StepGridGeometry::dot(cell);
    paintMark(painter, dot, dot.width() / 2);
  } else {
    paintPanel(painter, cell, cornerRadius, kind == Kind::light ? Theme::raised : Theme::surface,
               Theme::lineWeak);
  }
  return pixmap;
}

}  // namespace velmora
