#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QUrl>
#include <QUrlQuery>
#include <optional>
#include <stop_token>
#include <string>

#include "Platform/Services/HTTPClient.h"

namespace velmora {

/// The client of the community service: one raw step that every endpoint shares. Fails after one attempt with
/// `AccountAPIError`, `platform::HTTPError` or `platform::Cancelled`.
class CommunityAPI {
 public:
  static constexpr qint64 longestBody = 3'800'000;  ///< bytes, of an answer and of a preview

  struct Request {
    QByteArray method = "GET";
    QString path;  ///< under the community's own address
    QUrlQuery query;
    std::optional<QByteArray> body;
    QByteArray contentType = "application/json";  ///< of a body
  };

  /// `endpoint` is the service's address, without a path. The client must outlive this.
  CommunityAPI(platform::HTTPClient& client, const QUrl& endpoint);

  /// The answer's bytes.
  QCoro::Task<QByteArray> sendCommunityRequest(Request request, std::optional<std::string> token,
                                               std::stop_token stop = {}) const;

 private:
  platform::HTTPClient& client_;
  QUrl origin_;
};

}  // namespace velmora
