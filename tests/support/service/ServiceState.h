#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/service/ServiceDouble.h"

namespace velmora::testing {

struct ServiceReply {
  int status = 200;
  std::string body;
  std::string contentType = "application/json";
};

/// What the service knows and does, without a network. One thread at a time.
class ServiceState {
 public:
  using IDs = std::set<std::string>;
  struct Account {
    ServiceDouble::Account own;
    std::optional<ServiceDouble::Profile> profile;
    IDs followers, blocked;
  };
  struct Post {
    ServiceDouble::Post own;
    std::string creatorID;
    std::string publishedAt;
    std::size_t number = 0;  ///< a later one is newer
    IDs voters;
  };

  ServiceReply answer(const ServiceRequest& request);

  std::string openSession(const std::string& accountID);
  void endSessions(const std::string& accountID);
  std::string addPost(const std::string& accountID, const ServiceDouble::Post& post);
  std::string* stateOf(const std::string& id);
  void approveEverything();

  std::map<std::string, Account> accounts;
  std::map<std::string, std::string> sessions;  ///< account ids by token
  std::map<std::string, Post> posts;
  std::vector<std::string> reports, telemetry;
  std::size_t pageSize = 20;
  bool isApproving = false;

 private:
  std::size_t lastNumber_ = 0;
};

}  // namespace velmora::testing
