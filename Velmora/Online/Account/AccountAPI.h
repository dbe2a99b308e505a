#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QString>
#include <QUrl>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "Platform/Services/HTTPClient.h"
#include "Velmora/Online/Account/AccountRecords.h"

namespace velmora {

/// The client of the account service, without a state of its own: each call is one request and fails after
/// one attempt with `AccountAPIError` (the service said no), `platform::HTTPError` (no answer) or
/// `DecodingError`.
class AccountAPI {
 public:
  enum class Account : std::uint8_t { existing, created };

  /// `endpoint` is the service's address, without a path. The client must outlive this.
  AccountAPI(platform::HTTPClient& client, QUrl endpoint);

  QCoro::Task<VelmoraSession> signIn(Account account, std::string username, std::string password) const;
  QCoro::Task<> signOut(std::string token) const;
  QCoro::Task<> deleteAccount(std::string token) const;
  QCoro::Task<VelmoraCustomer> fetchMe(std::string token) const;
  QCoro::Task<> recordActivity(std::string token) const;
  /// The answer takes the place of the session, as it ends all earlier ones.
  QCoro::Task<VelmoraSession> changePassword(std::string token, std::string currentPassword,
                                             std::string newPassword) const;

 private:
  using Texts = std::map<std::string, std::string>;

  /// The step that all share: one request, and the body of its success.
  QCoro::Task<QByteArray> sendAccountRequest(QString path, QByteArray method,
                                             std::optional<std::string> token = {},
                                             std::optional<Texts> body = {}) const;

  platform::HTTPClient& client_;
  QUrl base_;  // ends with a slash
};

}  // namespace velmora
