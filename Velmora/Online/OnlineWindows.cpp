#include "Velmora/Online/OnlineWindows.h"

#include <QGuiApplication>
#include <memory>
#include <utility>

#include "Platform/Services/UpdateService.h"
#include "Velmora/Online/AccountViews/AccountManagementView.h"
#include "Velmora/Online/CommunityViews/CommunityView.h"
#include "Velmora/Online/Updates/StudioChannel.h"
#include "Velmora/Online/Updates/UpdateNotice.h"

namespace velmora {

OnlineWindows::OnlineWindows(AppModel& model, OnlineServices& services, std::function<void()> quit,
                             CommunityStore::MakeOutput makeOutput)
    : model_(model),
      services_(services),
      quit_(std::move(quit)),
      makeOutput_(std::move(makeOutput)),
      updater_([this](platform::UpdateServiceDelegate& delegate) {
        return std::make_unique<platform::UpdateService>(
            studioChannel(services_.preferences),
            platform::UpdateService::Surroundings{.client = services_.client,
                                                  .preferences = services_.preferences,
                                                  .installer = services_.installer,
                                                  .delegate = delegate,
                                                  .userDriver = updateWindow_,
                                                  .quit = quit_});
      }),
      accountListener_([this] { presentAccount(); }, services.account.showsAccount),
      communityListener_([this] { presentCommunity(); }, services.account.showsCommunity) {
  connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, &OnlineWindows::applicationChanged);
}

void OnlineWindows::start() {
  services_.telemetry.record(TelemetryEvent::studioOpened);
  if (std::exchange(hasStarted_, true)) return;
  services_.account.start();
  updater_.start(model_);
}

void OnlineWindows::applicationChanged(Qt::ApplicationState state) {
  if (state != Qt::ApplicationActive || !hasStarted_) return;
  services_.telemetry.record(TelemetryEvent::appActive);
  services_.account.refresh();
}

void OnlineWindows::showAccount(QWidget* window) {
  window_ = window;
  services_.account.showsAccount.set(true);
}

void OnlineWindows::showCommunity(QWidget* window) {
  window_ = window;
  if (!services_.account.showsCommunity()) services_.telemetry.record(TelemetryEvent::communityOpened);
  services_.account.showsCommunity.set(true);
}

void OnlineWindows::checkForUpdates(QWidget* window) {
  window_ = window;
  updater_.checkForUpdates();
}

/// The sheet closes by itself when the field is cleared.
void OnlineWindows::presentAccount() {
  if (!services_.account.showsAccount() || accountSheet_) return;
  auto* const sheet =
      new AccountManagementView(model_, services_.account, services_.telemetry, services_.endpoint, window_);
  accountSheet_ = sheet;
  connect(sheet, &QObject::destroyed, this, [this] { services_.account.showsAccount.set(false); });
  sheet->open();
}

void OnlineWindows::presentCommunity() {
  AccountStore& account = services_.account;
  if (!account.showsCommunity() || communitySheet_) return;
  std::optional<std::string> token;
  if (account.session()) token = account.session()->sessionToken;
  auto store = std::make_unique<CommunityStore>(CommunityAPI(services_.client, services_.endpoint),
                                                std::move(token), makeOutput_);
  auto* const sheet = new CommunityView(model_, std::move(store), services_.endpoint, window_);
  communitySheet_ = sheet;
  connect(sheet, &QObject::destroyed, this, [&account] { account.showsCommunity.set(false); });
  sheet->open();
}

std::function<void(const QRect&)> OnlineWindows::makeUpdateNotice(QWidget* parent) {
  const QPointer notice(new UpdateNotice(updater_, parent));
  return [notice](const QRect& workspace) {
    if (notice) notice->place(workspace);
  };
}

QString OnlineWindows::accountEntry() const {
  return services_.account.session() ? "Velmora Account" : "Sign In…";
}

}  // namespace velmora
