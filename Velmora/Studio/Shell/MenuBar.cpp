#include "Velmora/Studio/Shell/MenuBar.h"

#include <QMenu>
#include <algorithm>

namespace velmora {

namespace {

QList<QKeySequence> sequences(const MenuRow& row) {
  QList<QKeySequence> keys;
  for (const QKeyCombination key : row.keys) {
    if (key.key() != Qt::Key_unknown) keys << QKeySequence(key);
  }
  return keys;
}

}  // namespace

MenuBar::MenuBar(AppModel& model, const WindowActions& actions, QWidget* parent)
    : QMenuBar(parent), target_{model, actions}, listener_([this] { refresh(); }, model.editorVisible) {
  for (const MenuRow& row : menuRows()) addRow(row);
  refresh();
}

void MenuBar::addRow(const MenuRow& row) {
  QMenu& menu = menuNamed(row.menu);
  if (!row.text) return void(menu.addSeparator());
  if (row.fill) return row.fill(*menu.addMenu(row.text), target_.model);
  QAction* action = menu.addAction(row.text);
  action->setShortcuts(sequences(row));
  action->setAutoRepeat(false);
  connect(action, &QAction::triggered, this, [this, run = row.run] { run(target_); });
  if (row.liveText) liveTexts_.emplace_back(action, row.liveText);
}

QMenu& MenuBar::menuNamed(const char* title) {
  const QList<QAction*> menus = actions();
  const auto found = std::ranges::find(menus, QString(title), &QAction::text);
  return found == menus.end() ? *addMenu(title) : *(*found)->menu();
}

void MenuBar::refresh() {
  for (const auto& [action, text] : liveTexts_) action->setText(text(target_.model));
}

}  // namespace velmora
