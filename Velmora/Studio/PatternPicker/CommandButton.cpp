#include "Velmora/Studio/PatternPicker/CommandButton.h"

#include <QPainter>
#include <cmath>
#include <utility>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int hitHeight = 44;
constexpr double panelHeight = 32;
constexpr double radius = 8;
constexpr int padding = 10;
constexpr int gap = 8;
constexpr int symbolWidth = 20;

}  // namespace

CommandButton::CommandButton(const QString& text, QString symbol, QWidget* parent)
    : PaintedButton(text, parent), symbol_(std::move(symbol)) {
  setText(text);
  setFont(Theme::font(Theme::Text::control));
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize CommandButton::sizeHint() const {
  const int words = static_cast<int>(std::ceil(QFontMetricsF(font()).horizontalAdvance(text())));
  return {2 * padding + symbolWidth + gap + words, hitHeight};
}

void CommandButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF panel(0, (height() - panelHeight) / 2, width(), panelHeight);
  if (!isEnabled()) painter.setOpacity(Theme::disabledOpacity);
  if (isEnabled() && underMouse())
    paintPanel(painter, panel, radius, isDown() ? Theme::lineWeak : Theme::stripe);
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, panel, radius);
  const QRectF symbol(padding, panel.top(), symbolWidth, panel.height());
  Theme::drawSymbol(painter, symbol, symbol_, Theme::text, 15);
  painter.setFont(font());
  painter.setPen(Theme::text);
  painter.drawText(panel.adjusted(symbol.right() + gap, 0, 0, 0), Qt::AlignVCenter, text());
}

}  // namespace velmora
