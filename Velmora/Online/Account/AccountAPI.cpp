#include "Velmora/Online/Account/AccountAPI.h"

#include <utility>

#include "Velmora/Online/Account/AccountCoding.h"

namespace velmora {
namespace {

constexpr char unreachable[] = "Could not reach Velmora. Please try again.";
constexpr int serviceUnavailable = 503;

platform::HTTPRequest request(QByteArray method, QUrl url, const std::optional<std::string>& token) {
  platform::HTTPRequest request{.method = std::move(method), .url = std::move(url)};
  request.headers.emplace_back("Accept", "application/json");
  if (token) request.headers.emplace_back("Authorization", "Bearer " + QByteArray::fromStdString(*token));
  return request;
}

/// The body of a success.
QByteArray successOf(platform::HTTPAnswer answer) {
  if (answer.status == 0) throw AccountAPIError(serviceUnavailable, unreachable);
  if (answer.isSuccess()) return std::move(answer.body);
  const auto failure = decodeErrorBody(answer.body);
  throw AccountAPIError(answer.status, failure ? failure->error : unreachable);
}

}  // namespace

AccountAPI::AccountAPI(platform::HTTPClient& client, QUrl endpoint)
    : client_(client), base_(std::move(endpoint)) {
  base_.setPath("/api/v1/");
}

QCoro::Task<QByteArray> AccountAPI::sendAccountRequest(QString path, QByteArray method,
                                                       std::optional<std::string> token,
                                                       std::optional<Texts> body) const {
  platform::HTTPRequest asked = request(std::move(method), base_.resolved(QUrl(path)), token);
  if (body) {
    asked.headers.emplace_back("Content-Type", "application/json");
    asked.body = encodeFields(JSONFields(body->begin(), body->end()));
  }
  auto sending = client_.send(std::move(asked));
  platform::HTTPAnswer answer = co_await sending;
  co_return successOf(std::move(answer));
}

QCoro::Task<VelmoraSession> AccountAPI::signIn(Account account, std::string username,
                                               std::string password) const {
  Texts texts{{"username", std::move(username)}, {"password", std::move(password)}};
  const char* path = account == Account::existing ? "auth/password" : "auth/register";
  auto sending = sendAccountRequest(path, "POST", {}, std::move(texts));
  const QByteArray answer = co_await sending;
  co_return decodeSession(JSONValue::parse(answer));
}

QCoro::Task<> AccountAPI::signOut(std::string token) const {
  auto sending = sendAccountRequest("auth/sign-out", "POST", std::move(token));
  const QByteArray answer = co_await sending;
  const auto json = JSONValue::parse(answer);
  if (!json.isNull()) decodeOK(json);
}

QCoro::Task<> AccountAPI::deleteAccount(std::string token) const {
  auto sending = sendAccountRequest("account", "DELETE", std::move(token));
  const QByteArray answer = co_await sending;
  decodeOK(JSONValue::parse(answer));
}

QCoro::Task<VelmoraCustomer> AccountAPI::fetchMe(std::string token) const {
  auto sending = sendAccountRequest("me", "GET", std::move(token));
  const QByteArray answer = co_await sending;
  co_return decodeMe(JSONValue::parse(answer)).customer;
}

QCoro::Task<> AccountAPI::recordActivity(std::string token) const {
  auto sending = sendAccountRequest("activity", "POST", std::move(token));
  const QByteArray answer = co_await sending;
  decodeOK(JSONValue::parse(answer));
}

QCoro::Task<VelmoraSession> AccountAPI::changePassword(std::string token, std::string currentPassword,
                                                       std::string newPassword) const {
  Texts texts{{"currentPassword", std::move(currentPassword)}, {"newPassword", std::move(newPassword)}};
  auto sending = sendAccountRequest("account/password", "POST", std::move(token), std::move(texts));
  const QByteArray answer = co_await sending;
  co_return decodeSession(JSONValue::parse(answer));
}

}  // namespace velmora
