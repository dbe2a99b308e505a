#pragma once

#include <QMenuBar>
#include <utility>
#include <vector>

#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Shell/MenuRow.h"

namespace velmora {

/// The menus of one window. No item is ever disabled: a command that can't run refuses by itself.
class MenuBar : public QMenuBar {
 public:
  /// Model and actions outlive the menus.
  MenuBar(AppModel& model, const WindowActions& actions, QWidget* parent = nullptr);

 private:
  void addRow(const MenuRow& row);
  QMenu& menuNamed(const char* title);
  void refresh();

  const MenuTarget target_;
  std::vector<std::pair<QAction*, QString (*)(const AppModel&)>> liveTexts_;
  ChangeListener listener_;
};

}  // namespace velmora
