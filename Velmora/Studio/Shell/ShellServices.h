#pragma once

#include <QFileDialog>
#include <QString>
#include <functional>

class QWidget;

namespace velmora {

/// Makes the views of the workspaces, for each window its own. A missing one leaves its area empty.
struct WorkspaceViews {
  using Make = std::function<QWidget*(QWidget* parent)>;
  Make arrangement;
  Make patternEditor;
  Make mixer;
};

/// What the shell opens but doesn't hold, supplied by whoever composes the application.
struct ShellServices {
  WorkspaceViews views;
  /// For audio files. Without options the dialogs are the desktop's own where it has some, otherwise Qt's.
  QFileDialog::Options fileDialogOptions;
  std::function<void()> contentAppeared;  ///< once for every window, when it is on the screen
  std::function<void()> stayedOpen;       ///< the process was asked to end, and goes on

  // The online services; without one its items do nothing.
  std::function<void(QWidget* window)> checkForUpdates;
  std::function<void(QWidget* window)> showAccount;
  std::function<void(QWidget* window)> showCommunity;
  /// Makes what may offer something over a window's workspace; gives what is to be told the workspace's
  /// place.
  std::function<std::function<void(const QRect& workspace)>(QWidget* parent)> makeNotice;
  std::function<QString()> accountEntry;  ///< the account's text in the menu "Project actions"

  /// Ends the process; everything is saved. Without one the event loop is left.
  std::function<void()> terminate;
};

}  // namespace velmora
