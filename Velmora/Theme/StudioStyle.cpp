#include "Velmora/Theme/StudioStyle.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QMenu>
#include <algorithm>
#include <iterator>

#include "Velmora/Theme/StyleParts.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

struct MetricRow {
  QStyle::PixelMetric metric;
  int value;
};

constexpr MetricRow metrics[] = {
    {QStyle::PM_DefaultFrameWidth, 1},
    {QStyle::PM_ComboBoxFrameWidth, 1},
    {QStyle::PM_SpinBoxFrameWidth, 1},
    {QStyle::PM_ScrollBarExtent, StyleSizes::scrollBar},
    {QStyle::PM_ScrollBarSliderMin, 32},
    {QStyle::PM_SliderThickness, 24},
    {QStyle::PM_SliderControlThickness, StyleSizes::sliderHandle},
    {QStyle::PM_SliderLength, StyleSizes::sliderHandle},
    {QStyle::PM_IndicatorWidth, 18},
    {QStyle::PM_IndicatorHeight, 18},
    {QStyle::PM_ExclusiveIndicatorWidth, 18},
    {QStyle::PM_ExclusiveIndicatorHeight, 18},
    {QStyle::PM_SmallIconSize, 18},
    {QStyle::PM_ButtonIconSize, 18},
    {QStyle::PM_ToolBarIconSize, 20},
    {QStyle::PM_ButtonShiftHorizontal, 0},
    {QStyle::PM_ButtonShiftVertical, 0},
    {QStyle::PM_MenuPanelWidth, 0},
    {QStyle::PM_MenuHMargin, 6},
    {QStyle::PM_MenuVMargin, 6},
    {QStyle::PM_ToolTipLabelFrameWidth, 6},
};

bool opensAsList(const QComboBox* box) { return box && !box->isEditable(); }

QSize atLeastControlHeight(QSize size) { return size.expandedTo({0, StyleSizes::controlHeight}); }

QSize menuItemSize(const QStyleOption* option, const QSize& contents) {
  const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
  if (item && item->menuItemType == QStyleOptionMenuItem::Separator) return {contents.width(), 9};
  const int gap = item && item->text.contains('\t') ? StyleSizes::menuShortcutGap : 0;
  const int marks = item ? StyleSizes::menuMarksWidth(*item) : StyleSizes::menuMarkWidth;
  return {marks + contents.width() + gap + 2 * StyleSizes::textMargin, StyleSizes::menuItemHeight};
}

/// The edit field or, at the end, the arrow of a closed list.
QRect comboBoxPart(const QRect& rect, QStyle::SubControl part) {
  const int middle = rect.width() - StyleSizes::arrowWidth;
  const QRect text = rect.adjusted(StyleSizes::textMargin, 1, -StyleSizes::arrowWidth, -1);
  return part == QStyle::SC_ComboBoxArrow ? rect.adjusted(middle, 0, -4, 0) : text;
}

QRect spinBoxPart(const QRect& rect, QStyle::SubControl part) {
  const QRect buttons = rect.adjusted(rect.width() - StyleSizes::arrowWidth, 2, -2, -2);
  if (part == QStyle::SC_SpinBoxUp) return buttons.adjusted(0, 0, 0, -buttons.height() / 2);
  if (part == QStyle::SC_SpinBoxDown) return buttons.adjusted(0, buttons.height() / 2, 0, 0);
  return rect.adjusted(6, 1, -StyleSizes::arrowWidth, -1);
}

/// A scroll bar without end buttons: the base style's, with its slider along the whole length.
QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part) {
  const bool isLevel = bar.orientation == Qt::Horizontal;
  const int length = isLevel ? bar.rect.width() : bar.rect.height();
  const int range = bar.maximum - bar.minimum;
  const int shown =
      range > 0 ? qRound(double(length) * bar.pageStep / (double(range) + bar.pageStep)) : length;
  const int slider = std::clamp(shown, std::min(32, length), length);
  const int start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                    length - slider, bar.upsideDown);
  const auto along = [&](int from, int extent) {
    return isLevel ? QRect(bar.rect.left() + from, bar.rect.top(), extent, bar.rect.height())
                   : QRect(bar.rect.left(), bar.rect.top() + from, bar.rect.width(), extent);
  };
  if (part == QStyle::SC_ScrollBarSlider) return along(start, slider);
  if (part == QStyle::SC_ScrollBarSubPage) return along(0, start);
  if (part == QStyle::SC_ScrollBarAddPage) return along(start + slider, length - start - slider);
  return part == QStyle::SC_ScrollBarGroove ? bar.rect : QRect();
}

}  // namespace

void StudioStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  if (auto* const menu = qobject_cast<QMenu*>(widget)) {
    menu->setAttribute(Qt::WA_TranslucentBackground);
    // By itself it stays open after a screen reader's choice.
    QObject::connect(menu, &QMenu::triggered, menu, &QWidget::close, Qt::UniqueConnection);
  }
  if (qobject_cast<QAbstractButton*>(widget) || opensAsList(qobject_cast<QComboBox*>(widget))) {
    widget->setFocusPolicy(widget->focusPolicy() & Qt::TabFocus ? Qt::TabFocus : Qt::NoFocus);
  }
}

void StudioStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
  if (const auto draw = drawingOf(element)) {
    draw({*option, *painter, widget, *this});
  } else {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void StudioStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
  if (const auto draw = drawingOf(element)) {
    draw({*option, *painter, widget, *this});
  } else {
    QProxyStyle::drawControl(element, option, painter, widget);
  }
}

void StudioStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const {
  if (const auto draw = drawingOf(control)) {
    draw({*option, *painter, widget, *this});
  } else {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
}

QRect StudioStyle::subElementRect(SubElement element, const QStyleOption* option,
                                  const QWidget* widget) const {
  if (element == SE_PushButtonFocusRect) return option->rect;
  if (element == SE_LineEditContents) {
    const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    const int margin =
        frame && frame->lineWidth > 0 ? StyleSizes::textMargin - 2 : 0;  // and 2 of the field's own
    return option->rect.adjusted(margin, 0, -margin, 0);
  }
  return QProxyStyle::subElementRect(element, option, widget);
}

QRect StudioStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                  const QWidget* widget) const {
  if (control == CC_ComboBox && (part == SC_ComboBoxArrow || part == SC_ComboBoxEditField)) {
    return comboBoxPart(option->rect, part);
  }
  const auto* const box = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
  if (control == CC_SpinBox && part != SC_SpinBoxFrame && box &&
      box->buttonSymbols != QAbstractSpinBox::NoButtons) {
    return spinBoxPart(option->rect, part);
  }
  const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_ScrollBar && bar) return scrollBarPart(*bar, part);
  return QProxyStyle::subControlRect(control, option, part, widget);
}

QSize StudioStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                    const QWidget* widget) const {
  switch (type) {
    case CT_PushButton:
      return atLeastControlHeight(contents + QSize(32, 12)).expandedTo({72, 0});
    case CT_ToolButton:
      return atLeastControlHeight(contents + QSize(16, 8));
    case CT_LineEdit:
      return atLeastControlHeight(contents + QSize(2 * StyleSizes::textMargin, 8));
    case CT_ComboBox:
      return atLeastControlHeight(contents + QSize(StyleSizes::textMargin + StyleSizes::arrowWidth + 4, 8));
    case CT_SpinBox:
      return atLeastControlHeight(contents + QSize(StyleSizes::arrowWidth + 10, 0));
    case CT_MenuItem:
      return menuItemSize(option, contents);
    case CT_MenuBarItem:
      return contents + QSize(20, 10);
    default:
      return QProxyStyle::sizeFromContents(type, option, contents, widget);
  }
}

int StudioStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  const auto* const row = std::ranges::find(metrics, metric, &MetricRow::metric);
  return row == std::end(metrics) ? QProxyStyle::pixelMetric(metric, option, widget) : row->value;
}

int StudioStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* returnData) const {
  switch (hint) {
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
      return 0;
    case SH_Widget_Animation_Duration:
      return Theme::duration(100);
    case SH_Slider_AbsoluteSetButtons:
      return Qt::LeftButton;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returnData);
  }
}

}  // namespace velmora
