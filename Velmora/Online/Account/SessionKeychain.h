#pragma once

#include <optional>

#include "Platform/Services/CredentialStore.h"
#include "Velmora/Online/Account/AccountRecords.h"

namespace velmora {

/// The failure of the credential store; its text is the store's own.
using KeychainError = platform::CredentialError;

/// Keeps the session in the credential store, as one item. Functions without state; each throws
/// `KeychainError`.
struct SessionKeychain {
  /// Gives the item its new value, or makes the item. Throws `EncodingError`, too.
  static void save(platform::CredentialStore& credentials, const VelmoraSession& session);
  /// None if nothing is stored. Throws `DecodingError`, too.
  static std::optional<VelmoraSession> load(platform::CredentialStore& credentials);
  /// Nothing stored is as good.
  static void remove(platform::CredentialStore& credentials);
};

}  // namespace velmora
