#include <algorithm>
#include <iterator>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/StyleParts.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

/// The base style's drawing with another colour of text.
template <class Option, QStyle::ControlElement element>
void drawBaseInColor(const StylePart& part, const Option& option, const QColor& color) {
  Option changed = option;
  for (const auto role : {QPalette::ButtonText, QPalette::Text, QPalette::HighlightedText}) {
    changed.palette.setColor(role, color);
  }
  part.style.QProxyStyle::drawControl(element, &changed, &part.painter, part.widget);
}

QColor textColor(const StylePart& part) {
  return part.is(QStyle::State_Enabled) ? Theme::text
                                        : Theme::withOpacity(Theme::text, Theme::disabledOpacity);
}

void pushButtonLabel(const StylePart& part) {
  const auto* const button = part.as<QStyleOptionButton>();
  if (!button) return;
  const bool isDefault = button->features.testFlag(QStyleOptionButton::DefaultButton);
  const QColor color = isDefault ? Theme::ink : part.is(QStyle::State_On) ? Theme::accent : textColor(part);
  drawBaseInColor<QStyleOptionButton, QStyle::CE_PushButtonLabel>(part, *button, color);
}

void toolButtonLabel(const StylePart& part) {
  const auto* const button = part.as<QStyleOptionToolButton>();
  if (!button) return;
  const QColor color = part.is(QStyle::State_On) ? Theme::accent : textColor(part);
  drawBaseInColor<QStyleOptionToolButton, QStyle::CE_ToolButtonLabel>(part, *button, color);
}

void itemViewItem(const StylePart& part) {
  const auto* const item = part.as<QStyleOptionViewItem>();
  if (item) drawBaseInColor<QStyleOptionViewItem, QStyle::CE_ItemViewItem>(part, *item, textColor(part));
}

void menuBarGround(const StylePart& part) { part.painter.fillRect(part.option.rect, Theme::surface); }

void menuBarItem(const StylePart& part) {
  const auto* const item = part.as<QStyleOptionMenuItem>();
  if (!item) return;
  menuBarGround(part);
  if (part.is(QStyle::State_Selected)) {
    paintPanel(part.painter, QRectF(part.option.rect).adjusted(1, 2, -1, -2), 6, Theme::lineWeak);
  }
  part.painter.setPen(textColor(part));
  part.painter.drawText(part.option.rect, Qt::AlignCenter | Qt::TextShowMnemonic, item->text);
}

/// An entry of a menu and the places of its pieces.
struct MenuRow {
  const StylePart& part;
  const QStyleOptionMenuItem& item;

  QRect rect() const { return part.option.rect; }
  int marksWidth() const { return StyleSizes::menuMarksWidth(item); }
  QRect mark() const { return {rect().left(), rect().top(), StyleSizes::menuMarkWidth, rect().height()}; }
  QRect icon() const { return mark().translated(marksWidth() - StyleSizes::menuMarkWidth, 0); }
  QRect words() const { return rect().adjusted(marksWidth(), 0, -StyleSizes::textMargin, 0); }
  QColor color() const { return textColor(part); }

  void paintGround() const {
    if (!part.is(QStyle::State_Selected) || !part.is(QStyle::State_Enabled)) return;
    paintPanel(part.painter, rect(), 6, Theme::withOpacity(Theme::accent, 0.18));
  }

  void paintMarks() const {
    if (item.checkType != QStyleOptionMenuItem::NotCheckable && item.checked)
      Theme::drawSymbol(part.painter, mark(), "checkmark", Theme::accent, 12);
    const QIcon::Mode mode = part.is(QStyle::State_Enabled) ? QIcon::Normal : QIcon::Disabled;
    QRect place(0, 0, 16, 16);
    place.moveCenter(icon().center());
    item.icon.paint(&part.painter, place, Qt::AlignCenter, mode);
  }

  void paintText() const {
    const QStringList texts = item.text.split('\t');
    part.painter.setFont(item.font);
    part.painter.setPen(color());
    part.painter.drawText(words(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic, texts.front());
    if (texts.size() < 2) return;
    part.painter.setPen(Theme::secondary);
    part.painter.drawText(words(), Qt::AlignVCenter | Qt::AlignRight, texts.back());
  }

  void paintArrow() const {
    if (item.menuItemType != QStyleOptionMenuItem::SubMenu) return;
    const QRect end(words().right() - 12, rect().top(), 16, rect().height());
    Theme::drawSymbol(part.painter, end, "chevron.right", Theme::secondary, 11);
  }
};

void menuItem(const StylePart& part) {
  const auto* const item = part.as<QStyleOptionMenuItem>();
  if (!item) return;
  if (item->menuItemType == QStyleOptionMenuItem::Separator) {
    const QRect rect = part.option.rect;
    part.painter.fillRect(rect.left() + 4, rect.center().y(), rect.width() - 8, 1, Theme::lineWeak);
    return;
  }
  part.painter.save();
  const MenuRow row{part, *item};
  row.paintGround();
  row.paintMarks();
  row.paintText();
  row.paintArrow();
  part.painter.restore();
}

QRectF progressBar(const QRect& rect) {
  constexpr int height = 6;
  return QRect(rect.left(), rect.top() + (rect.height() - height) / 2, rect.width(), height);
}

void progressGroove(const StylePart& part) {
  paintPanel(part.painter, progressBar(part.option.rect), 3, Theme::deep, Theme::lineWeak);
}

/// Of unknown length: a piece in the middle that stands still, as the text beside it says what goes on.
void progressContents(const StylePart& part) {
  const auto* const bar = part.as<QStyleOptionProgressBar>();
  if (!bar) return;
  QRectF rect = progressBar(part.option.rect);
  if (bar->maximum <= bar->minimum) {
    rect.adjust(rect.width() / 3, 0, -rect.width() / 3, 0);
  } else {
    rect.setWidth(rect.width() * (bar->progress - bar->minimum) / (bar->maximum - bar->minimum));
  }
  paintPanel(part.painter, rect, std::min(3.0, rect.width() / 2), Theme::accent);
}

struct Row {
  QStyle::ControlElement element;
  DrawStylePart draw;
};

constexpr Row rows[] = {
    {QStyle::CE_PushButtonLabel, pushButtonLabel},  {QStyle::CE_ToolButtonLabel, toolButtonLabel},
    {QStyle::CE_ItemViewItem, itemViewItem},        {QStyle::CE_MenuBarItem, menuBarItem},
    {QStyle::CE_MenuBarEmptyArea, menuBarGround},   {QStyle::CE_MenuItem, menuItem},
    {QStyle::CE_ProgressBarGroove, progressGroove}, {QStyle::CE_ProgressBarContents, progressContents},
};

}  // namespace

DrawStylePart drawingOf(QStyle::ControlElement element) {
  const auto* const row = std::ranges::find(rows, element, &Row::element);
  return row == std::end(rows) ? nullptr : row->draw;
}

}  // namespace velmora
