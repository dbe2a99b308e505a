#pragma once

#include <QKeyCombination>
#include <QString>
#include <array>
#include <span>

#include "Velmora/Studio/Shell/WindowActions.h"

class QMenu;

namespace velmora {

/// What the items of the menu bar work on.
struct MenuTarget {
  AppModel& model;
  const WindowActions& window;
};

/// One item of the menu bar; without a text it is a rule.
struct MenuRow {
  const char* menu;  ///< its mnemonic marked with &
  const char* text = nullptr;
  void (*run)(const MenuTarget&) = nullptr;
  std::array<QKeyCombination, 2> keys{};                    ///< the first one is shown
  QString (*liveText)(const AppModel&) = nullptr;           ///< in place of `text`, where it changes
  void (*fill)(QMenu& submenu, AppModel& model) = nullptr;  ///< of an item that holds others
};

/// The whole menu bar in its order.
std::span<const MenuRow> menuRows();

}  // namespace velmora
