#pragma once

#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>

namespace velmora {

/// One call to draw a part of a widget.
struct StylePart {
  const QStyleOption& option;
  QPainter& painter;
  const QWidget* widget = nullptr;
  const QProxyStyle& style;

  bool is(QStyle::StateFlag flag) const { return option.state.testFlag(flag); }
  /// The option as the part's own kind; null where it is of another kind.
  template <class Option>
  const Option* as() const {
    return qstyleoption_cast<const Option*>(&option);
  }
};

using DrawStylePart = void (*)(const StylePart&);

// What the studio draws itself; null where the base style draws. The base style asks back for the parts that
// a control is made of.
DrawStylePart drawingOf(QStyle::PrimitiveElement element);
DrawStylePart drawingOf(QStyle::ControlElement element);
DrawStylePart drawingOf(QStyle::ComplexControl control);

/// Sizes that the drawings and the style's geometry share.
struct StyleSizes {
  static constexpr int controlHeight = 32;
  static constexpr double cornerRadius = 8;
  static constexpr int textMargin = 10;
  static constexpr int arrowWidth = 26;  ///< of a closed list and of the two buttons of a spin box
  static constexpr int scrollBar = 10;
  static constexpr int sliderGroove = 4;
  static constexpr int sliderHandle = 16;
  static constexpr int menuItemHeight = 28;
  static constexpr int menuMarkWidth = 28;  ///< of a check mark or an icon
  static constexpr int menuShortcutGap = 28;

  /// Ahead of the texts of a menu: one column for check marks or icons, two where there are both.
  static int menuMarksWidth(const QStyleOptionMenuItem& item) {
    const bool hasBoth = item.menuHasCheckableItems && item.maxIconWidth > 0;
    return hasBoth ? 2 * menuMarkWidth : menuMarkWidth;
  }
};

}  // namespace velmora
