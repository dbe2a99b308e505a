#include "Velmora/Online/Community/CommunityAPI.h"

#include <chrono>
#include <utility>

#include "Velmora/Online/Account/AccountCoding.h"
#include "Velmora/Online/Community/CommunityRecords.h"

namespace velmora {
namespace {

constexpr std::chrono::seconds patience{45};  // more than elsewhere, as this client carries sound, too
constexpr int contentTooLarge = 413;
constexpr int serviceUnavailable = 503;

platform::HTTPRequest prepared(CommunityAPI::Request request, QUrl url,
                               const std::optional<std::string>& token) {
  url.setPath(url.path() + request.path);
  if (!request.query.isEmpty()) url.setQuery(request.query);
  platform::HTTPRequest prepared{.method = std::move(request.method), .url = std::move(url)};
  if (token) prepared.headers.emplace_back("Authorization", "Bearer " + QByteArray::fromStdString(*token));
  if (request.body) prepared.headers.emplace_back("Content-Type", std::move(request.contentType));
  prepared.body = std::move(request.body);
  prepared.patience = patience;
  prepared.bodyLimit = CommunityAPI::longestBody;
  return prepared;
}

/// The body of a success.
QByteArray successOf(platform::HTTPAnswer answer) {
  if (answer.status == 0) throw AccountAPIError(serviceUnavailable, "The community could not connect.");
  if (!answer.isSuccess()) {
    const std::optional<Failure> failure = decodeErrorBody(answer.body);
    throw AccountAPIError(answer.status, failure
                                             ? failure->error
                                             : "The community is temporarily unavailable. Please try again.");
  }
  if (answer.body.size() > CommunityAPI::longestBody)
    throw AccountAPIError(contentTooLarge, "This preview is too large.");
  return std::move(answer.body);
}

}  // namespace

CommunityAPI::CommunityAPI(platform::HTTPClient& client, const QUrl& endpoint)
    : client_(client), origin_(endpoint) {
  origin_.setPath("/api/v1/community/");
}

/// Uses nothing of the object's once the answer is awaited: whoever asked may be gone by then.
QCoro::Task<QByteArray> CommunityAPI::sendCommunityRequest(Request request, std::optional<std::string> token,
                                                           std::stop_token stop) const {
  auto sending = client_.send(prepared(std::move(request), origin_, token), std::move(stop));
  platform::HTTPAnswer answer = co_await sending;
  co_return successOf(std::move(answer));
}

}  // namespace velmora
