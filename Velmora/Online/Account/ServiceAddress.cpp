#include "Velmora/Online/Account/ServiceAddress.h"

#include <QDesktopServices>
#include <array>

#include "Platform/Services/HTTPClient.h"

namespace velmora {
namespace {

/// A reserved name, which nobody can own: until there is a service, no password goes to a stranger.
constexpr char standardEndpoint[] = "https://velmora.halvenor.example";

constexpr std::array pagePaths{"/privacy", "/terms", "/support", "/community/rules", "/community/report"};

}  // namespace

QUrl serviceEndpoint(const platform::Preferences& preferences) {
  const QUrl address(preferences.text("serviceEndpoint", standardEndpoint).trimmed(), QUrl::StrictMode);
  return address.adjusted(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

bool openServicePage(const QUrl& endpoint, ServicePage page) {
  QUrl address = endpoint;
  address.setPath(pagePaths[static_cast<std::size_t>(page)]);
  return platform::isSecure(address) && QDesktopServices::openUrl(address);
}

}  // namespace velmora
