#include "Velmora/Studio/Shell/WindowGroup.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QSessionManager>
#include <algorithm>
#include <utility>

namespace velmora {

WindowGroup::WindowGroup(AppModel& model, ShellServices services)
    : model_(model),
      services_(std::move(services)),
      audioFileActions_(model, services_.fileDialogOptions, [this] { return front(); }),
      keyFilter_(model.isEditingText),
      lifecycle_([this](bool mayTerminate) { reply(mayTerminate); }),
      busyListener_(
          [this] {
            if (isQuitAwaited_) quitSoon();
          },
          model.isProjectBusy, model.isAudioBusy) {
  QGuiApplication::setQuitOnLastWindowClosed(false);
  const auto commit = [this](QSessionManager& session) {
    if (!mayEndSession()) session.cancel();
  };
  connect(qGuiApp, &QGuiApplication::commitDataRequest, this, commit, Qt::DirectConnection);
}

WindowGroup::~WindowGroup() {
  for (const QPointer<MainWindow>& window : std::exchange(windows_, {})) delete window.data();
  for (const QPointer<MainWindow>& window : closed_) delete window.data();
}

MainWindow& WindowGroup::open() {
  auto* window = new MainWindow(*this);
  windows_.emplace_back(window);
  window->show();
  return *window;
}

void WindowGroup::bringToFront() {
  MainWindow* window = front();
  if (!window) return;
  window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
  window->raise();
  window->activateWindow();
}

void WindowGroup::contentAppeared() {
  lifecycle_.setModel(&model_);
  if (!std::exchange(hasStarted_, true)) model_.startUp();
  if (services_.contentAppeared) services_.contentAppeared();
}

void WindowGroup::becameActive(const MainWindow& window) {
  std::stable_partition(windows_.begin(), windows_.end(), [&](const auto& each) { return each != &window; });
}

bool WindowGroup::mayClose(MainWindow& window) {
  if (windows_.size() == 1) quit();
  if (windows_.size() == 1 && !mayTerminate_) return false;
  std::erase(closed_, nullptr);
  closed_.emplace_back(&window);
  std::erase(windows_, &window);
  return true;
}

void WindowGroup::quit() {
  if (mayTerminate_) return;
  if (lifecycle_.applicationShouldTerminate() == ApplicationLifecycle::Answer::now) reply(true);
}

void WindowGroup::quitSoon() {
  isQuitAwaited_ = model_.isProjectBusy() || model_.isAudioBusy();
  if (!isQuitAwaited_) quit();
}

void WindowGroup::reply(bool mayTerminate) {
  mayTerminate_ = mayTerminate;
  if (sessionWait_) sessionWait_->quit();
  if (mayTerminate) {
    services_.terminate ? services_.terminate() : QCoreApplication::exit(0);
  } else {
    bringToFront();  // its banner tells why
    if (services_.stayedOpen) services_.stayedOpen();
  }
}

bool WindowGroup::mayEndSession() {
  quit();
  if (lifecycle_.isClosing() && !mayTerminate_) {
    QEventLoop wait;
    sessionWait_ = &wait;
    wait.exec(QEventLoop::ExcludeUserInputEvents);
    sessionWait_ = nullptr;
  }
  return mayTerminate_;
}

}  // namespace velmora
