#pragma once

#include <QMainWindow>

#include "Velmora/Studio/Shell/RootView.h"

namespace velmora {

class WindowGroup;

/// One window of the studio. All windows show the one model; the last one closes only with the application.
class MainWindow : public QMainWindow {
 public:
  explicit MainWindow(WindowGroup& group);
  /// Remembers its place for the next start.
  ~MainWindow() override;

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  WindowActions makeActions();
  void showAbout();
  void restorePlace();

  WindowGroup& group_;
  const WindowActions actions_;
};

}  // namespace velmora
