#include "Velmora/Studio/Shell/ShellButton.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QtMath>
#include <algorithm>
#include <array>
#include <utility>

#include "Velmora/Theme/Paint.h"

namespace velmora {

namespace {

constexpr int buttonHeight = 44;
constexpr int padding = 12;
constexpr int gap = 8;
constexpr int symbolWidth = 20;
constexpr double symbolSize = 15;
constexpr double radius = 8;

/// What lies over the fill under the pointer and under a press.
QColor veil(const QAbstractButton& button) {
  if (button.isDown()) return Theme::lineWeak;
  return button.underMouse() && button.isEnabled() ? Theme::stripe : Qt::transparent;
}

}  // namespace

ShellButton::ShellButton(const QString& text, QString symbol, const Look& look, QWidget* parent)
    : PaintedButton(text, parent), symbol_(std::move(symbol)), look_(look) {
  setText(text);
  setToolTip({});
  setFont(Theme::font(look_.font));
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

ShellButton::ShellButton(const QString& text, QString symbol, QWidget* parent)
    : ShellButton(text, std::move(symbol), Look(), parent) {}

void ShellButton::setContent(const QString& text, const QString& symbol) {
  symbol_ = symbol;
  setText(text);
  setAccessibleName(text);
  updateGeometry();
}

void ShellButton::setLabelShown(Label label) {
  if (std::exchange(label_, label) == label) return;
  setToolTip(label == Label::hidden ? text() : QString());
  updateGeometry();
  update();
}

int ShellButton::contentWidth(int ofText) const {
  const int between = !symbol_.isEmpty() && ofText > 0 ? gap : 0;
  return (symbol_.isEmpty() ? 0 : symbolWidth) + between + ofText;
}

int ShellButton::textWidth(const QString& text) const {
  return text.isEmpty() ? 0 : qCeil(QFontMetricsF(font()).horizontalAdvance(text)) + 1;
}

int ShellButton::widthWith(const QString& text) const {
  return std::max(contentWidth(textWidth(text)) + 2 * padding, buttonHeight);
}

QSize ShellButton::sizeHint() const { return {widthWith(shownText()), buttonHeight}; }

QSize ShellButton::minimumSizeHint() const {
  return {std::min(sizeHint().width(), contentWidth(0) + 2 * padding + buttonHeight), buttonHeight};
}

QColor ShellButton::fillColor() const {
  constexpr std::array<QColor, 4> fills{QColor(0, 0, 0, 0), Theme::raised, Theme::accent, Theme::danger};
  return fills[static_cast<std::size_t>(look_.fill)];
}

QColor ShellButton::contentColor() const {
  const bool isOnColor = look_.fill == Fill::accent || look_.fill == Fill::danger;
  return isOnColor ? Theme::ink : look_.color;
}

void ShellButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF frame = QRectF(rect()).adjusted(0, 2, 0, -2);
  if (!isEnabled()) painter.setOpacity(Theme::disabledOpacity);
  paintPanel(painter, frame, radius, fillColor());
  paintPanel(painter, frame, radius, veil(*this));
  paintContent(painter);
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, frame, radius);
}

/// Symbol and text together in the middle.
void ShellButton::paintContent(QPainter& painter) const {
  const int room = width() - 2 * padding - contentWidth(1) + 1;
  const QString shown = fontMetrics().elidedText(shownText(), Qt::ElideRight, room);
  QRectF rest(0, 0, contentWidth(textWidth(shown)), height());
  rest.moveCenter(QRectF(rect()).center());
  if (!symbol_.isEmpty()) {
    const QRectF place(rest.topLeft(), QSizeF(symbolWidth, height()));
    Theme::drawSymbol(painter, place, symbol_, contentColor(), symbolSize);
  }
  rest.setLeft(rest.right() - textWidth(shown));
  painter.setPen(contentColor());
  painter.setFont(font());
  painter.drawText(rest, Qt::AlignVCenter | Qt::TextDontClip, shown);
}

}  // namespace velmora
