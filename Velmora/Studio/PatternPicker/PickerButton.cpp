#include "Velmora/Studio/PatternPicker/PickerButton.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int hitHeight = 44;
constexpr double panelHeight = 32;
constexpr double radius = 8;
constexpr int padding = 12;
constexpr int gap = 10;
constexpr int symbolWidth = 14;
constexpr int chevronWidth = 12;
constexpr int leastWidth = 120;
constexpr int mostWidth = 240;

}  // namespace

PickerButton::PickerButton(const QString& label, MenuOpener::Fill fill, QWidget* parent)
    : PaintedButton(label, parent), opener_(*this, std::move(fill), [this] { return choice_.spoken; }) {
  setToolTip({});  // it tells what is chosen
  setFont(Theme::font(Theme::Text::control));
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void PickerButton::setChoice(const Choice& choice) {
  if (choice == choice_) return;
  choice_ = choice;
  updateGeometry();
  update();
}

QSize PickerButton::sizeHint() const {
  const int symbol = choice_.symbol.isEmpty() ? 0 : symbolWidth + gap;
  const int text = static_cast<int>(std::ceil(QFontMetricsF(font()).horizontalAdvance(choice_.text)));
  const int content = symbol + text + gap + chevronWidth;
  return {std::clamp(content + 2 * padding, leastWidth, mostWidth), hitHeight};
}

QSize PickerButton::minimumSizeHint() const { return {std::min(sizeHint().width(), 88), hitHeight}; }

void PickerButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF panel(0, (height() - panelHeight) / 2, width(), panelHeight);
  if (!isEnabled()) painter.setOpacity(Theme::disabledOpacity);
  paintPanel(painter, panel, radius, Theme::raised, Theme::line);
  if (isEnabled() && (underMouse() || opener_.isOpen())) paintPanel(painter, panel, radius, Theme::stripe);
  paintContent(painter, panel.adjusted(padding, 0, -padding, 0));
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, panel, radius);
}

void PickerButton::paintContent(QPainter& painter, QRectF rest) const {
  if (!choice_.symbol.isEmpty()) {
    const QRectF symbol(rest.topLeft(), QSizeF(symbolWidth, rest.height()));
    Theme::drawSymbol(painter, symbol, choice_.symbol, Theme::text, 12);
    rest.setLeft(symbol.right() + gap);
  }
  const QRectF chevron(rest.right() - chevronWidth, rest.top(), chevronWidth, rest.height());
  Theme::drawSymbol(painter, chevron, "chevron.down", Theme::secondary, 12);
  rest.setRight(chevron.left() - gap);
  painter.setFont(font());
  painter.setPen(Theme::text);
  painter.drawText(rest, Qt::AlignVCenter,
                   fontMetrics().elidedText(choice_.text, Qt::ElideRight, qRound(rest.width())));
}

}  // namespace velmora
