#pragma once

#include <QString>
#include <functional>

#include "Velmora/Model/AppModel.h"

namespace velmora {

/// What the menus and the header of one window do besides the model's own commands.
struct WindowActions {
  std::function<void()> newWindow;
  std::function<void()> closeWindow;
  std::function<void()> quit;
  std::function<void()> exportWAV;
  std::function<void()> checkForUpdates;
  std::function<void()> showAccount;
  std::function<void()> showCommunity;
  std::function<void()> showAbout;
  std::function<QString()> accountEntry;
};

/// The item that flips the editor says what it will do.
inline QString editorItemText(const AppModel& model) {
  return model.editorVisible() ? "Hide Editor" : "Show Editor";
}
inline void flipEditor(AppModel& model) { model.editorVisible.set(!model.editorVisible()); }

}  // namespace velmora
