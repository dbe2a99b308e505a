#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velmora {

/// What a platform's own sign-in asks the user to sign.
struct AppleChallenge {
  std::string id;
  std::string nonce;
};

/// A platform sign-in in progress. Nothing starts one here; sessions that came from one keep their fields.
struct AppleSignInFlow {
  std::optional<AppleChallenge> prepared;
  std::optional<AppleChallenge> pending;
  std::int64_t revision = 0;
  bool preparing = false;

  void reset() { *this = {.revision = revision + 1}; }
};

}  // namespace velmora
