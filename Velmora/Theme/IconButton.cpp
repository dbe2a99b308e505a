#include "Velmora/Theme/IconButton.h"

#include <QPainter>
#include <utility>

#include "Velmora/Theme/Paint.h"

namespace velmora {

IconButton::IconButton(QString symbol, const QString& label, QWidget* parent)
    : PaintedButton(label, parent), symbol_(std::move(symbol)) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void IconButton::setSymbol(const QString& symbol) {
  symbol_ = symbol;
  update();
}

void IconButton::setTint(const QColor& tint) {
  tint_ = tint;
  update();
}

void IconButton::setSymbolSize(double size) {
  symbolSize_ = size;
  update();
}

void IconButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF frame = rect();
  paintPanel(painter, frame, 8, Theme::withOpacity(Theme::raised, press_.amount()));
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, frame, 8);
  if (!isEnabled()) painter.setOpacity(Theme::disabledOpacity);
  press_.scaleAbout(painter, frame);
  Theme::drawSymbol(painter, frame, symbol_, tint_, symbolSize_);
}

}  // namespace velmora
