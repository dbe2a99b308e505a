#include "Velmora/Studio/Shell/MainWindow.h"

#include <QCloseEvent>
#include <QSettings>

#include "Velmora/Studio/Shell/AboutView.h"
#include "Velmora/Studio/Shell/MenuBar.h"
#include "Velmora/Studio/Shell/WindowGroup.h"

namespace velmora {

namespace {

constexpr QSize firstSize{1280, 800};
const QString placeKey = "mainWindow";

/// What a service opens over the window.
std::function<void()> opening(const std::function<void(QWidget*)>& service, QWidget* window) {
  return [service, window] {
    if (service) service(window);
  };
}

}  // namespace

MainWindow::MainWindow(WindowGroup& group) : group_(group), actions_(makeActions()) {
  setObjectName("main");
  setWindowTitle("Velmora by Orrin");
  setAttribute(Qt::WA_DeleteOnClose);
  setMenuBar(new MenuBar(group.model(), actions_));
  auto* root = new RootView(group.model(), group.services().views, group.editorFraction(), actions_,
                            group.audioFileActions());
  root->onAppear = [this] { group_.contentAppeared(); };
  root->isInFront = [this] { return group_.front() == this; };
  if (group_.services().makeNotice) root->setNotice(group_.services().makeNotice(root));
  setCentralWidget(root);
  restorePlace();
}

MainWindow::~MainWindow() { QSettings("Orrin", "Velmora").setValue(placeKey, saveGeometry()); }

WindowActions MainWindow::makeActions() {
  const ShellServices& services = group_.services();
  return {.newWindow = [this] { group_.open(); },
          .closeWindow = [this] { close(); },
          .quit = [this] { group_.quit(); },
          .exportWAV = [this] { group_.audioFileActions().exportWAV(); },
          .checkForUpdates = opening(services.checkForUpdates, this),
          .showAccount = opening(services.showAccount, this),
          .showCommunity = opening(services.showCommunity, this),
          .showAbout = [this] { showAbout(); },
          .accountEntry = services.accountEntry ? services.accountEntry : [] { return "Velmora Account"; }};
}

void MainWindow::showAbout() { (new AboutView(this))->open(); }

/// A further window stands a little lower and to the right of the one in front.
void MainWindow::restorePlace() {
  resize(firstSize);
  if (const MainWindow* front = group_.front()) {
    resize(front->size());
    move(front->pos() + QPoint(32, 32));
  } else {
    restoreGeometry(QSettings("Orrin", "Velmora").value(placeKey).toByteArray());
  }
}

void MainWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) group_.becameActive(*this);
  QMainWindow::changeEvent(event);
}

void MainWindow::closeEvent(QCloseEvent* event) { event->setAccepted(group_.mayClose(*this)); }

}  // namespace velmora
