#include "Velmora/Online/Updates/StudioChannel.h"

#include <QCoreApplication>
#include <QSysInfo>

namespace velmora {

namespace {

/// On a reserved name, which nobody can own.
constexpr char feeds[] = "https://velmora.halvenor.example/updates/";

/// The public key of the releases, as `velmora-update-feed` prints it. All zero: there are none yet, and so
/// there is no update channel.
constexpr char releaseKey[] = "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA=";

}  // namespace

// Programs of another architecture wouldn't run, so that each has a channel of its own.
platform::UpdateChannel studioChannel(const platform::Preferences& preferences) {
  const QString channel = "stable-" + QSysInfo::buildCpuArchitecture();
  const QString address = preferences.text("updateFeed", feeds + channel + ".feed").trimmed();
  return {.name = "Velmora",
          .application = "com.halvenor.Velmora",
          .channel = channel,
          .version = QCoreApplication::applicationVersion(),
          .feed = QUrl(address, QUrl::StrictMode),
          .key = platform::readKeyText(releaseKey)};
}

}  // namespace velmora
