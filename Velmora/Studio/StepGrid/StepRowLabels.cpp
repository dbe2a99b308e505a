#include "Velmora/Studio/StepGrid/StepRowLabels.h"

#include <QPainter>

#include "Velmora/Studio/StepGrid/StepGridGeometry.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr QSizeF barSize{3, 18};
constexpr double barRadius = 2;
constexpr double textLeft = 11;

}  // namespace

void StepRowLabels::setColor(const QColor& color) {
  if (color == color_) return;
  color_ = color;
  update();
}

void StepRowLabels::setOffset(int offset) {
  if (offset == offset_) return;
  offset_ = offset;
  update();
}

void StepRowLabels::paintEvent(QPaintEvent*) {
  constexpr double rowHeight = StepGridGeometry::cellSize;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setFont(Theme::font(Theme::Text::control));
  QRectF row(0, -offset_, width(), rowHeight);
  for (const DrumSound sound : stepSounds) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(color_);
    painter.drawRoundedRect(QRectF({0, row.top() + (rowHeight - barSize.height()) / 2}, barSize), barRadius,
                            barRadius);
    painter.setPen(Theme::text);
    const std::string_view name = label(sound);
    painter.drawText(row.adjusted(textLeft, 0, 0, 0), Qt::AlignVCenter,
                     QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    row.translate(0, rowHeight);
  }
}

}  // namespace velmora
