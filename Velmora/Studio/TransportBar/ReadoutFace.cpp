#include "Velmora/Studio/TransportBar/ReadoutFace.h"

#include <QFontMetricsF>
#include <cmath>

#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr int lineGap = 8;  // between the capitals of the caption and the digits

/// The height of a line that holds digits or capitals only.
int capHeight(const QFont& font) { return qRound(QFontMetricsF(font).capHeight()); }

/// Draws with the capitals standing on `baseline`, in the middle of the width and on whole pixels.
void drawCentred(QPainter& painter, const QFont& font, const QColor& color, int width, int baseline,
                 const QString& text) {
  const double advance = QFontMetricsF(font).horizontalAdvance(text) - font.letterSpacing();
  painter.setFont(font);
  painter.setPen(color);
  painter.drawText(QPointF(std::round((width - advance) / 2), baseline), text);
}

}  // namespace

QFont ReadoutFace::numberFont() const {
  return Theme::font(sizeClass == SizeClass::compact ? Theme::Text::compactReadout : Theme::Text::readout);
}

int ReadoutFace::numberWidth() const {
  return static_cast<int>(std::ceil(QFontMetricsF(numberFont()).horizontalAdvance(number)));
}

void ReadoutFace::paint(QPainter& painter, const QSize& size) const {
  const QFont captionFont = Theme::font(Theme::Text::capitals);
  const int captionHeight = capHeight(captionFont);
  const int digitsHeight = capHeight(numberFont());
  const bool isCaptionFirst = order == Order::captionFirst;
  const int top = (size.height() - captionHeight - lineGap - digitsHeight) / 2;
  const int upper = top + (isCaptionFirst ? captionHeight : digitsHeight);
  const int lower = top + captionHeight + lineGap + digitsHeight;
  painter.fillRect(QRect(QPoint(), size), Theme::surface);
  drawCentred(painter, captionFont, Theme::secondary, size.width(), isCaptionFirst ? upper : lower, caption);
  drawCentred(painter, numberFont(), Theme::text, size.width(), isCaptionFirst ? lower : upper, number);
}

}  // namespace velmora
