#include <algorithm>
#include <iterator>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/StyleParts.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr QColor hovered{0x2B, 0x2D, 0x33};

void nothing(const StylePart&) {}

void dimIfDisabled(const StylePart& part) {
  if (!part.is(QStyle::State_Enabled)) part.painter.setOpacity(Theme::disabledOpacity);
}

struct Panel {
  QColor fill;
  QColor outline;
};

constexpr QColor clear{0, 0, 0, 0};

Panel chosen() { return {Theme::withOpacity(Theme::accent, 0.18), Theme::withOpacity(Theme::accent, 0.6)}; }

bool isDefaultButton(const StylePart& part) {
  const auto* const button = part.as<QStyleOptionButton>();
  return button && button->features.testFlag(QStyleOptionButton::DefaultButton);
}

Panel commandButton(const StylePart& part) {
  const bool isDown = part.is(QStyle::State_Sunken);
  if (isDefaultButton(part)) return {isDown ? Theme::accent.darker(115) : Theme::accent, clear};
  if (part.is(QStyle::State_On)) return chosen();
  if (isDown) return {Theme::deep, Theme::line};
  return {part.is(QStyle::State_MouseOver) ? hovered : Theme::raised, Theme::line};
}

void panelButtonCommand(const StylePart& part) {
  dimIfDisabled(part);
  const Panel panel = commandButton(part);
  paintPanel(part.painter, part.option.rect, StyleSizes::cornerRadius, panel.fill, panel.outline);
  part.painter.setOpacity(1);
}

Panel toolButton(const StylePart& part) {
  if (part.is(QStyle::State_On)) return chosen();
  if (part.is(QStyle::State_Sunken)) return {Theme::raised, clear};
  return {part.is(QStyle::State_MouseOver) && part.is(QStyle::State_Enabled) ? Theme::lineWeak : clear,
          clear};
}

void panelButtonTool(const StylePart& part) {
  const Panel panel = toolButton(part);
  paintPanel(part.painter, part.option.rect, StyleSizes::cornerRadius, panel.fill, panel.outline);
}

void panelLineEdit(const StylePart& part) {
  const auto* const frame = part.as<QStyleOptionFrame>();
  if (!frame || frame->lineWidth <= 0) return;
  const QColor outline = part.is(QStyle::State_HasFocus) ? Theme::accent : Theme::line;
  paintPanel(part.painter, part.option.rect, StyleSizes::cornerRadius, Theme::deep, outline);
}

void frame(const StylePart& part) { paintPanel(part.painter, part.option.rect, 0, clear, Theme::line); }

void menuPanel(const StylePart& part) {
  paintPanel(part.painter, part.option.rect, 10, Theme::raised, Theme::line);
}

void toolTipPanel(const StylePart& part) {
  paintPanel(part.painter, part.option.rect, 0, Theme::raised, Theme::line);
}

void focusRect(const StylePart& part) {
  if (part.is(QStyle::State_KeyboardFocusChange)) {
    paintFocusRing(part.painter, part.option.rect, StyleSizes::cornerRadius);
  }
}

void itemPanel(const StylePart& part) {
  const QRectF rect = QRectF(part.option.rect).adjusted(2, 1, -2, -1);
  if (part.is(QStyle::State_Selected)) {
    paintPanel(part.painter, rect, 6, Theme::withOpacity(Theme::accent, 0.18));
  } else if (part.is(QStyle::State_MouseOver) && part.is(QStyle::State_Enabled)) {
    paintPanel(part.painter, rect, 6, Theme::stripe);
  }
}

/// The ground of a check box or radio button.
void indicator(const StylePart& part, double radius) {
  const bool isOn = part.is(QStyle::State_On) || part.is(QStyle::State_NoChange);
  dimIfDisabled(part);
  paintPanel(part.painter, part.option.rect, radius, isOn ? Theme::accent : Theme::deep,
             isOn ? clear : Theme::line);
}

void checkBox(const StylePart& part) {
  const QRectF rect = part.option.rect;
  indicator(part, 5);
  if (part.is(QStyle::State_On)) Theme::drawSymbol(part.painter, rect, "checkmark", Theme::ink, 11);
  if (part.is(QStyle::State_NoChange)) Theme::drawSymbol(part.painter, rect, "minus", Theme::ink, 11);
  part.painter.setOpacity(1);
}

void radioButton(const StylePart& part) {
  const QRectF rect = part.option.rect;
  indicator(part, rect.height() / 2);
  if (part.is(QStyle::State_On)) {
    paintPanel(part.painter, QRectF(rect.center() - QPointF(3, 3), QSizeF(6, 6)), 3, Theme::ink);
  }
  part.painter.setOpacity(1);
}

template <const char* symbol>
void arrow(const StylePart& part) {
  const QColor color = part.is(QStyle::State_Enabled)
                           ? Theme::secondary
                           : Theme::withOpacity(Theme::secondary, Theme::disabledOpacity);
  Theme::drawSymbol(part.painter, part.option.rect, QString::fromLatin1(symbol), color, 11);
}

constexpr char up[] = "chevron.up";
constexpr char down[] = "chevron.down";
constexpr char left[] = "chevron.left";
constexpr char right[] = "chevron.right";

struct Row {
  QStyle::PrimitiveElement element;
  DrawStylePart draw;
};

constexpr Row rows[] = {
    {QStyle::PE_PanelButtonCommand, panelButtonCommand},
    {QStyle::PE_FrameDefaultButton, nothing},
    {QStyle::PE_PanelButtonTool, panelButtonTool},
    {QStyle::PE_FrameButtonTool, nothing},
    {QStyle::PE_PanelScrollAreaCorner, nothing},
    {QStyle::PE_PanelLineEdit, panelLineEdit},
    {QStyle::PE_FrameLineEdit, nothing},
    {QStyle::PE_Frame, frame},
    {QStyle::PE_PanelMenu, menuPanel},
    {QStyle::PE_FrameMenu, nothing},
    {QStyle::PE_PanelTipLabel, toolTipPanel},
    {QStyle::PE_FrameFocusRect, focusRect},
    {QStyle::PE_PanelItemViewItem, itemPanel},
    {QStyle::PE_IndicatorCheckBox, checkBox},
    {QStyle::PE_IndicatorRadioButton, radioButton},
    {QStyle::PE_IndicatorArrowUp, arrow<up>},
    {QStyle::PE_IndicatorArrowDown, arrow<down>},
    {QStyle::PE_IndicatorArrowLeft, arrow<left>},
    {QStyle::PE_IndicatorArrowRight, arrow<right>},
};

}  // namespace

DrawStylePart drawingOf(QStyle::PrimitiveElement element) {
  const auto* const row = std::ranges::find(rows, element, &Row::element);
  return row == std::end(rows) ? nullptr : row->draw;
}

}  // namespace velmora
