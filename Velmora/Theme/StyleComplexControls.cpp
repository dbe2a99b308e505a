#include <algorithm>
#include <iterator>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/StyleParts.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

template <class Option>
QRect placeOf(const StylePart& part, QStyle::ComplexControl control, QStyle::SubControl piece) {
  return part.style.subControlRect(control, part.as<Option>(), piece, part.widget);
}

void comboBox(const StylePart& part) {
  const auto* const box = part.as<QStyleOptionComboBox>();
  if (!box) return;
  if (!part.is(QStyle::State_Enabled)) part.painter.setOpacity(Theme::disabledOpacity);
  const bool isLit = part.is(QStyle::State_MouseOver) && part.is(QStyle::State_Enabled);
  const QColor fill = box->editable ? Theme::deep : isLit ? QColor(0x2B, 0x2D, 0x33) : Theme::raised;
  paintPanel(part.painter, part.option.rect, StyleSizes::cornerRadius, fill, Theme::line);
  const QRect arrow = placeOf<QStyleOptionComboBox>(part, QStyle::CC_ComboBox, QStyle::SC_ComboBoxArrow);
  Theme::drawSymbol(part.painter, arrow, "chevron.down", Theme::secondary, 11);
  part.painter.setOpacity(1);
  if (part.is(QStyle::State_HasFocus) && part.is(QStyle::State_KeyboardFocusChange)) {
    paintFocusRing(part.painter, part.option.rect, StyleSizes::cornerRadius);
  }
}

void spinButton(const StylePart& part, QStyle::SubControl piece, const QString& symbol) {
  const auto* const box = part.as<QStyleOptionSpinBox>();
  const auto enabled =
      piece == QStyle::SC_SpinBoxUp ? QAbstractSpinBox::StepUpEnabled : QAbstractSpinBox::StepDownEnabled;
  const QRect rect = placeOf<QStyleOptionSpinBox>(part, QStyle::CC_SpinBox, piece);
  const bool isDown = part.is(QStyle::State_Sunken) && box->activeSubControls.testFlag(piece);
  if (isDown) paintPanel(part.painter, rect, 5, Theme::raised);
  const double opacity = box->stepEnabled.testFlag(enabled) ? 1 : Theme::disabledOpacity;
  Theme::drawSymbol(part.painter, rect, symbol, Theme::withOpacity(Theme::secondary, opacity), 10);
}

void spinBox(const StylePart& part) {
  const auto* const box = part.as<QStyleOptionSpinBox>();
  if (!box) return;
  if (box->frame) {
    const QColor outline = part.is(QStyle::State_HasFocus) ? Theme::accent : Theme::line;
    paintPanel(part.painter, part.option.rect, StyleSizes::cornerRadius, Theme::deep, outline);
  }
  if (box->buttonSymbols == QAbstractSpinBox::NoButtons) return;
  spinButton(part, QStyle::SC_SpinBoxUp, "chevron.up");
  spinButton(part, QStyle::SC_SpinBoxDown, "chevron.down");
}

/// The part of the groove that counts as filled: from the lower end to the handle.
QRectF filledGroove(const QRectF& groove, const QRectF& handle, const QStyleOptionSlider& slider) {
  QRectF filled = groove;
  if (slider.orientation == Qt::Vertical) {
    filled.setTop(handle.center().y());
  } else if (slider.upsideDown) {
    filled.setLeft(handle.center().x());
  } else {
    filled.setRight(handle.center().x());
  }
  return filled;
}

QRectF sliderHandle(const StylePart& part) {
  const QRectF place = placeOf<QStyleOptionSlider>(part, QStyle::CC_Slider, QStyle::SC_SliderHandle);
  QRectF handle(QPointF(), QSizeF(StyleSizes::sliderHandle, StyleSizes::sliderHandle));
  handle.moveCenter(place.center());
  return handle;
}

void slider(const StylePart& part) {
  const auto* const option = part.as<QStyleOptionSlider>();
  if (!option) return;
  const QRectF handle = sliderHandle(part);
  QRectF groove = part.option.rect;
  const bool isUpright = option->orientation == Qt::Vertical;
  (isUpright ? groove.setWidth(StyleSizes::sliderGroove) : groove.setHeight(StyleSizes::sliderGroove));
  groove.moveCenter(QRectF(part.option.rect).center());
  const double radius = StyleSizes::sliderGroove / 2.0;
  if (!part.is(QStyle::State_Enabled)) part.painter.setOpacity(Theme::disabledOpacity);
  paintPanel(part.painter, groove, radius, Theme::line);
  paintPanel(part.painter, filledGroove(groove, handle, *option), radius, Theme::accent);
  paintPanel(part.painter, handle, handle.height() / 2, Theme::text);
  part.painter.setOpacity(1);
  if (part.is(QStyle::State_HasFocus) && part.is(QStyle::State_KeyboardFocusChange)) {
    paintFocusRing(part.painter, handle.adjusted(-2, -2, 2, 2), handle.height() / 2 + 2);
  }
}

void scrollBar(const StylePart& part) {
  const auto* const option = part.as<QStyleOptionSlider>();
  if (!option || option->maximum <= option->minimum) return;
  const QRectF handle =
      QRectF(placeOf<QStyleOptionSlider>(part, QStyle::CC_ScrollBar, QStyle::SC_ScrollBarSlider))
          .adjusted(2, 2, -2, -2);
  const bool isLit = part.is(QStyle::State_MouseOver) || part.is(QStyle::State_Sunken);
  paintPanel(part.painter, handle, std::min(handle.width(), handle.height()) / 2,
             Theme::withOpacity(Theme::text, isLit ? 0.35 : 0.18));
}

struct Row {
  QStyle::ComplexControl control;
  DrawStylePart draw;
};

constexpr Row rows[] = {
    {QStyle::CC_ComboBox, comboBox},
    {QStyle::CC_SpinBox, spinBox},
    {QStyle::CC_Slider, slider},
    {QStyle::CC_ScrollBar, scrollBar},
};

}  // namespace

DrawStylePart drawingOf(QStyle::ComplexControl control) {
  const auto* const row = std::ranges::find(rows, control, &Row::control);
  return row == std::end(rows) ? nullptr : row->draw;
}

}  // namespace velmora
