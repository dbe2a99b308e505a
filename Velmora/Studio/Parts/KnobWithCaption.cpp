#include "Velmora/Studio/Parts/KnobWithCaption.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int leastWidth = 44;
constexpr double knobSide = 38;
constexpr double spacing = 3;
constexpr double captionHeight = 12;

}  // namespace

KnobWithCaption::KnobWithCaption(const QString& caption, controls::ClosedRange<float> range,
                                 const QColor& color, QWidget* parent)
    : SmallKnob(parent), caption_(caption) {
  setRange(range);
  setColor(color);
  setFont(Theme::font(Theme::Text::capitals));
}

void KnobWithCaption::setColor(const QColor& color) {
  setLook({.backgroundColor = Theme::raised, .foregroundColor = color, .ringColor = Theme::line});
}

QSize KnobWithCaption::sizeHint() const {
  const int captionWidth = static_cast<int>(std::ceil(QFontMetricsF(font()).horizontalAdvance(caption_)));
  return {std::max(leastWidth, captionWidth), static_cast<int>(knobSide + spacing + captionHeight)};
}

QRectF KnobWithCaption::frame() const { return {(width() - knobSide) / 2, 0, knobSide, knobSide}; }

void KnobWithCaption::paintEvent(QPaintEvent* event) {
  SmallKnob::paintEvent(event);
  QPainter painter(this);
  painter.setFont(font());
  painter.setPen(Theme::secondary);
  painter.drawText(QRectF(0, knobSide + spacing, width(), captionHeight), Qt::AlignCenter, caption_);
}

}  // namespace velmora
