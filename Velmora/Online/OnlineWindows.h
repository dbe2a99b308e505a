#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <functional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Online/Community/CommunityStore.h"
#include "Velmora/Online/OnlineServices.h"
#include "Velmora/Online/Updates/AppUpdater.h"
#include "Velmora/Online/Updates/UpdateWindow.h"

namespace velmora {

/// What the online services show: the account and the community, each over the window that asked for it, and
/// the offer of an update. Starts the services once the studio is on the screen.
class OnlineWindows final : public QObject {
 public:
  /// Model and services outlive it. `quit` asks for the end of the process; `makeOutput` is what a preview of
  /// the community plays on.
  OnlineWindows(AppModel& model, OnlineServices& services, std::function<void()> quit,
                CommunityStore::MakeOutput makeOutput);

  /// For the first window's appearance on the screen; for a further one nothing happens.
  void start();

  void showAccount(QWidget* window);
  void showCommunity(QWidget* window);
  void checkForUpdates(QWidget* window);
  /// Makes the card of updates; gives what is to be told the place of the parent's workspace.
  std::function<void(const QRect& workspace)> makeUpdateNotice(QWidget* parent);
  /// The account's text in a menu.
  QString accountEntry() const;

  /// A restart that was refused isn't made up for by the next plain end.
  void stayedOpen() { services_.installer.setRelaunches(false); }

 private:
  void presentAccount();
  void presentCommunity();
  void applicationChanged(Qt::ApplicationState state);

  AppModel& model_;
  OnlineServices& services_;
  const std::function<void()> quit_;
  const CommunityStore::MakeOutput makeOutput_;
  UpdateWindow updateWindow_{[this] { return window_.data(); }};
  AppUpdater updater_;
  QPointer<QWidget> window_;  // that asked last
  QPointer<QWidget> accountSheet_;
  QPointer<QWidget> communitySheet_;
  ChangeListener accountListener_;
  ChangeListener communityListener_;
  bool hasStarted_ = false;
};

}  // namespace velmora
