#include "Velmora/Online/OnlineServices.h"

#include "Velmora/Online/Account/ServiceAddress.h"

namespace velmora {

OnlineServices::OnlineServices(platform::UpdateInstaller& updateInstaller)
    : installer(updateInstaller),
      endpoint(serviceEndpoint(preferences)),
      credentials({.service = "com.halvenor.Velmora.account",
                   .account = "apple-session",
                   .label = "Velmora account"}),
      telemetry(preferences, telemetrySender(client, endpoint)),
      account(AccountAPI(client, endpoint), credentials, preferences, telemetry) {}

}  // namespace velmora
