#include "Velmora/Theme/ToggleChip.h"

#include <QPainter>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr double side = 28;
constexpr double cornerRadius = 7;

QRectF chipIn(const QRect& rect) {
  return {rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2, side, side};
}

}  // namespace

ToggleChip::ToggleChip(const QString& title, const QString& label, const QColor& color, QWidget* parent)
    : PaintedButton(label, parent), color_(color) {
  setText(title);
  setFont(Theme::font(Theme::Text::label));
  setCheckable(true);
  Spoken::attachToggle(*this);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ToggleChip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF chip = chipIn(rect());
  paintPanel(painter, chip, cornerRadius,
             isOn()     ? color_
             : isDown() ? Theme::raised
                        : Theme::surface,
             isOn() ? QColor(Qt::transparent) : Theme::line);
  painter.setPen(isOn() ? Theme::ink : Theme::secondary);
  painter.drawText(chip, Qt::AlignCenter, text());
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, chip.adjusted(-3, -3, 3, 3), cornerRadius + 3);
}

}  // namespace velmora
