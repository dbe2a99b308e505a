#pragma once

#include <QUrl>

#include "Platform/Services/HTTPClient.h"
#include "Platform/Services/Preferences.h"
#include "Platform/Services/SecretServiceStore.h"
#include "Platform/Services/UpdateInstaller.h"
#include "Velmora/Online/Account/AccountStore.h"
#include "Velmora/Online/Account/Telemetry.h"

namespace velmora {

/// What the online services share, made once for the whole process. Nothing of the network or of the desktop
/// is asked before somebody uses it.
struct OnlineServices {
  /// The installer outlives them.
  explicit OnlineServices(platform::UpdateInstaller& installer);

  platform::UpdateInstaller& installer;
  platform::Preferences preferences;
  const QUrl endpoint;
  platform::HTTPClient client;
  platform::SecretServiceStore credentials;
  Telemetry telemetry;
  AccountStore account;
};

}  // namespace velmora
