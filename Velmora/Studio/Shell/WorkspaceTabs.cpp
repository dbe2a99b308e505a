#include "Velmora/Studio/Shell/WorkspaceTabs.h"

#include <QHBoxLayout>
#include <utility>

#include "Velmora/Studio/Shell/WorkspaceEntry.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

WorkspaceTab::WorkspaceTab(const QString& text, QString symbol, QWidget* parent)
    : PaintedButton(text, parent), symbol_(std::move(symbol)) {
  setToolTip({});
  setText(text);
  setFont(Theme::font(Theme::Text::caption));
  setCheckable(true);
  setAutoExclusive(true);
  Spoken::attachToggle(*this);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void WorkspaceTab::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor color = isChecked() ? Theme::accent : Theme::secondary;
  if (isChecked()) painter.fillRect(rect(), Theme::withOpacity(Theme::accent, 0.08));
  if (isDown()) painter.fillRect(rect(), Theme::stripe);
  const QRectF frame(rect());
  Theme::drawSymbol(painter, frame.adjusted(0, 5, 0, -19), symbol_, color, 18);
  painter.setFont(font());
  painter.setPen(color);
  painter.drawText(frame.adjusted(0, 26, 0, -4), Qt::AlignCenter, text());
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, frame, 8);
}

WorkspaceTabs::WorkspaceTabs(AppModel& model, QWidget* parent)
    : QWidget(parent), model_(model), listener_([this] { refresh(); }, model.workspace) {
  setObjectName("tabs");
  setAccessibleName("Workspace");
  Spoken::attach(*this, {.role = QAccessible::Grouping});
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 1, 0, 0);  // the rule above
  row->setSpacing(0);
  for (const WorkspaceEntry& entry : workspaceEntries) {
    auto* tab = new WorkspaceTab(entry.text, entry.symbol, this);
    tab->setObjectName(QString("tabs.") + entry.id);
    connect(tab, &QAbstractButton::clicked, this, [this, &entry] { model_.setWorkspace(entry.workspace); });
    tabs_[static_cast<std::size_t>(entry.workspace)] = tab;
    row->addWidget(tab, 1);
  }
  refresh();
}

void WorkspaceTabs::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::surface);
  painter.fillRect(0, 0, width(), 1, Theme::line);
}

void WorkspaceTabs::refresh() { tabs_[static_cast<std::size_t>(model_.workspace())]->setChecked(true); }

}  // namespace velmora
