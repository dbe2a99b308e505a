#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "VelmoraCore/Song/SongJSON.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// A failure that the service reported, or the client in its place; `what` is one line for the user.
class AccountAPIError : public std::runtime_error {
 public:
  AccountAPIError(int status, const std::string& message) : std::runtime_error(message), status_(status) {}

  int status() const noexcept { return status_; }  ///< the answer's HTTP status
  std::string message() const { return what(); }

 private:
  int status_;
};

/// The account as the service reports it.
struct VelmoraCustomer {
  UUID id;
  std::optional<std::string> username;
  std::optional<std::string> email;
  std::optional<std::string> displayName;

  bool operator==(const VelmoraCustomer&) const = default;
};

/// What a sign-in returns and what the credential store keeps.
struct VelmoraSession {
  VelmoraCustomer customer;
  std::string sessionToken;
  std::string expiresAt;  ///< the service's own word, never read
  std::optional<std::string> appleUserID;

  bool operator==(const VelmoraSession&) const = default;
};

/// What the service knows about whoever asks.
struct Me {
  VelmoraCustomer customer;
};

/// That something was done; nobody looks at the value.
struct OK {
  bool ok = false;
};

/// Why something wasn't done, for the user.
struct ErrorBody {
  std::string error;
};

}  // namespace velmora
