#include "Velmora/Theme/CommandButton.h"

#include <QFontMetricsF>
#include <QMenu>
#include <QPainter>
#include <QtMath>
#include <algorithm>
#include <array>
#include <utility>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"

namespace velmora {

namespace {

constexpr int buttonHeight = 44;
constexpr int padding = 12;
constexpr int leastPadding = 4;  // before the text is elided
constexpr int gap = 8;
constexpr int symbolWidth = 20;
constexpr double symbolSize = 14;
constexpr int arrowWidth = 12;
constexpr double arrowSize = 10;
constexpr double radius = 8;

/// Widths of what stands side by side, with gaps between.
int sideBySide(std::initializer_list<int> widths) {
  int sum = 0;
  for (const int width : widths) {
    if (width > 0) sum += width + (sum > 0 ? gap : 0);
  }
  return sum;
}

/// What lies over the fill under the pointer and under a press.
QColor veil(const QAbstractButton& button) {
  if (button.isDown()) return Theme::lineWeak;
  return button.underMouse() && button.isEnabled() ? Theme::stripe : Qt::transparent;
}

}  // namespace

CommandButton::CommandButton(const QString& text, QString symbol, const Look& look, QWidget* parent)
    : PaintedButton(text, parent), symbol_(std::move(symbol)), look_(look) {
  setText(text);
  setToolTip({});
  setFont(Theme::font(look_.font));
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

CommandButton::CommandButton(const QString& text, QString symbol, QWidget* parent)
    : CommandButton(text, std::move(symbol), Look(), parent) {}

void CommandButton::setContent(const QString& text, const QString& symbol) {
  symbol_ = symbol;
  setText(text);
  setAccessibleName(text);
  if (label_ == Label::hidden) setToolTip(text);
  updateGeometry();
}

void CommandButton::setLabelShown(Label label) {
  if (std::exchange(label_, label) == label) return;
  setToolTip(label == Label::hidden ? text() : QString());
  updateGeometry();
  update();
}

QMenu& CommandButton::addMenu() {
  menu_ = new QMenu(this);
  const auto open = [this] { menu_->popup(mapToGlobal(QPoint(0, (height() + look_.groundHeight) / 2))); };
  connect(this, &QAbstractButton::clicked, menu_, open);
  Spoken::attach(*this, {.role = QAccessible::ButtonMenu, .press = open});
  return *menu_;
}

// Sizes

int CommandButton::textWidth(const QString& text) const {
  return text.isEmpty() ? 0 : qCeil(QFontMetricsF(font()).horizontalAdvance(text)) + 1;
}

int CommandButton::contentWidth(int ofText) const {
  return sideBySide({symbol_.isEmpty() ? 0 : symbolWidth, ofText, menu_ ? arrowWidth : 0});
}

int CommandButton::widthWith(Label label) const {
  const int content = contentWidth(label == Label::shown ? textWidth(text()) : 0);
  return std::max({content + 2 * padding, buttonHeight, minimumWidth()});
}

QSize CommandButton::sizeHint() const { return {widthWith(label_), buttonHeight}; }

QSize CommandButton::minimumSizeHint() const {
  return {std::min(sizeHint().width(), contentWidth(0) + 2 * padding + buttonHeight), buttonHeight};
}

// What is shown

QColor CommandButton::contentColor() const {
  if (isChecked()) return Theme::accent;
  return look_.fill == Fill::accent || look_.fill == Fill::danger ? Theme::ink : look_.color;
}

void CommandButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(Theme::disabledOpacity);
  paintGround(painter);
  paintContent(painter);
}

void CommandButton::paintGround(QPainter& painter) const {
  constexpr std::array<QColor, 4> fills{QColor(0, 0, 0, 0), Theme::raised, Theme::accent, Theme::danger};
  const double inset = (height() - look_.groundHeight) / 2.0;
  const QRectF ground = QRectF(rect()).adjusted(0, inset, 0, -inset);
  paintPanel(painter, ground, radius, fills.at(static_cast<std::size_t>(look_.fill)));
  if (isChecked())
    paintPanel(painter, ground, radius, Theme::withOpacity(Theme::accent, 0.18),
               Theme::withOpacity(Theme::accent, 0.6));
  paintPanel(painter, ground, radius, veil(*this));
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, ground, radius);
}

/// Symbol, text and arrow together in the middle.
void CommandButton::paintContent(QPainter& painter) const {
  const int room = width() - 2 * leastPadding - contentWidth(1) + 1;
  const QString shown = fontMetrics().elidedText(shownText(), Qt::ElideRight, room);
  QRectF rest(0, 0, contentWidth(textWidth(shown)), height());
  rest.moveCenter(QRectF(rect()).center());
  if (!symbol_.isEmpty()) {
    const QRectF place(rest.topLeft(), QSizeF(symbolWidth, height()));
    Theme::drawSymbol(painter, place, symbol_, contentColor(), symbolSize);
    rest.setLeft(place.right() + gap);
  }
  if (menu_) {
    const QRectF arrow(rest.right() - arrowWidth, 0, arrowWidth, height());
    Theme::drawSymbol(painter, arrow, "chevron.down", Theme::secondary, arrowSize);
  }
  painter.setPen(contentColor());
  painter.setFont(font());
  painter.drawText(rest, Qt::AlignVCenter | Qt::TextDontClip, shown);
}

}  // namespace velmora
