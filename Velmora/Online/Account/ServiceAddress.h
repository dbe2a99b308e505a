#pragma once

#include <QString>
#include <QUrl>

#include "Platform/Services/Preferences.h"

namespace velmora {

/// Where the online services are: the preference "serviceEndpoint", or the address that the studio knows.
/// Without a path.
QUrl serviceEndpoint(const platform::Preferences& preferences);

/// A page of the service for people.
enum class ServicePage { privacy, terms, support, communityRules, communityReport };

/// Opens the page in the desktop's browser; only by HTTPS, or by HTTP on the loopback. False if it couldn't.
bool openServicePage(const QUrl& endpoint, ServicePage page);

}  // namespace velmora
