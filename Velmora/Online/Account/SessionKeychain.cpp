#include "Velmora/Online/Account/SessionKeychain.h"

#include "Velmora/Online/Account/AccountCoding.h"

namespace velmora {

void SessionKeychain::save(platform::CredentialStore& credentials, const VelmoraSession& session) {
  const QByteArray value = encodeSession(session);
  if (!credentials.update(value)) credentials.add(value);
}

std::optional<VelmoraSession> SessionKeychain::load(platform::CredentialStore& credentials) {
  const auto value = credentials.load();
  if (!value) return {};
  return decodeSession(JSONValue::parse(*value, "The stored session"));
}

void SessionKeychain::remove(platform::CredentialStore& credentials) { credentials.remove(); }

}  // namespace velmora
