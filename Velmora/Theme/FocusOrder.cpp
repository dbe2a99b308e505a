#include "Velmora/Theme/FocusOrder.h"

#include <QWidget>
#include <algorithm>

namespace velmora {

namespace {

constexpr int overlap = 4;  // of what still counts as two rows

QWidgetList shownChildren(const QWidget& parent) {
  QWidgetList children = parent.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
  children.removeIf([](const QWidget* child) { return child->isHidden() || child->isWindow(); });
  return children;
}

/// What begins beside the first of a row belongs to it.
void sortIntoRows(QWidgetList& widgets) {
  std::ranges::stable_sort(widgets, {}, &QWidget::y);
  for (auto row = widgets.begin(); row != widgets.end();) {
    const int bottom = (*row)->geometry().bottom() - overlap;
    const auto next = std::find_if(row, widgets.end(), [=](const auto* each) { return each->y() > bottom; });
    const auto end = std::max(next, row + 1);
    std::ranges::stable_sort(row, end, {}, &QWidget::x);
    row = end;
  }
}

void appendStops(const QWidget& parent, QWidgetList& stops) {
  QWidgetList children = shownChildren(parent);
  sortIntoRows(children);
  for (QWidget* child : children) {
    if (child->focusPolicy() & Qt::TabFocus) stops << child;
    appendStops(*child, stops);
  }
}

}  // namespace

void orderFocusByPlace(QWidget& root) {
  QWidgetList stops;
  appendStops(root, stops);
  for (qsizetype i = 1; i < stops.size(); ++i) QWidget::setTabOrder(stops[i - 1], stops[i]);
}

}  // namespace velmora
