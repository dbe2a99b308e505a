#include "Velmora/Studio/Arrangement/ToolbarButton.h"

#include <QMenu>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int hitSize = 44;
constexpr int padding = 12;
constexpr int gap = 8;
constexpr int symbolWidth = 20;
constexpr double symbolSize = 13;
constexpr int arrowWidth = 12;
constexpr double arrowSize = 10;
constexpr double groundInset = 6;
constexpr double radius = 8;

/// Widths of what stands side by side, with gaps between.
int sideBySide(std::initializer_list<int> widths) {
  int sum = 0;
  for (int width : widths) {
    if (width > 0) sum += width + (sum > 0 ? gap : 0);
  }
  return sum;
}

}  // namespace

ToolbarButton::ToolbarButton(const char* objectName, const QString& text, QString symbol, QWidget* parent)
    : PaintedButton(text, parent), symbol_(std::move(symbol)) {
  setObjectName(objectName);
  setText(text);
  setFont(Theme::font(Theme::Text::control));
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ToolbarButton::setLabelShown(Label label) {
  if (std::exchange(label_, label) == label) return;
  updateGeometry();
  update();
}

QMenu& ToolbarButton::addMenu() {
  menu_ = new QMenu(this);
  const auto open = [this] { menu_->popup(mapToGlobal(rect().bottomLeft() - QPoint(0, int(groundInset)))); };
  connect(this, &QAbstractButton::clicked, menu_, open);
  Spoken::attach(*this, {.role = QAccessible::ButtonMenu, .press = open});
  return *menu_;
}

int ToolbarButton::contentWidth(const QString& shown) const {
  return sideBySide(
      {symbol_.isEmpty() ? 0 : symbolWidth, fontMetrics().horizontalAdvance(shown), menu_ ? arrowWidth : 0});
}

int ToolbarButton::widthWith(Label label) const {
  const int content = contentWidth(label == Label::shown ? text() : QString());
  return std::max({content + 2 * padding, hitSize, minimumWidth()});
}

QSize ToolbarButton::sizeHint() const { return {widthWith(label_), hitSize}; }

void ToolbarButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(Theme::disabledOpacity);
  paintGround(painter);
  paintContent(painter);
}

void ToolbarButton::paintGround(QPainter& painter) const {
  const QRectF ground = QRectF(rect()).adjusted(0, groundInset, 0, -groundInset);
  if (isChecked())
    paintPanel(painter, ground, radius, Theme::withOpacity(Theme::accent, 0.18),
               Theme::withOpacity(Theme::accent, 0.6));
  if (isDown()) {
    paintPanel(painter, ground, radius, Theme::lineWeak);
  } else if (underMouse() && isEnabled()) {
    paintPanel(painter, ground, radius, Theme::stripe);
  }
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, ground, radius);
}

/// Symbol, text and arrow together in the middle.
void ToolbarButton::paintContent(QPainter& painter) const {
  const QColor color = isChecked() ? Theme::accent : Theme::text;
  QRectF rest(0, 0, contentWidth(shownText()), height());
  rest.moveCenter(QRectF(rect()).center());
  if (!symbol_.isEmpty()) {
    Theme::drawSymbol(painter, QRectF(rest.topLeft(), QSizeF(symbolWidth, height())), symbol_, color,
                      symbolSize);
    rest.setLeft(rest.left() + symbolWidth + gap);
  }
  if (menu_) {
    const QRectF arrow(rest.right() - arrowWidth, 0, arrowWidth, height());
    Theme::drawSymbol(painter, arrow, "chevron.down", Theme::secondary, arrowSize);
  }
  painter.setPen(color);
  painter.setFont(font());
  painter.drawText(rest, Qt::AlignVCenter | Qt::TextDontClip, shownText());
}

}  // namespace velmora
