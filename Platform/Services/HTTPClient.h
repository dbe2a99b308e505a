#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QObject>
#include <QUrl>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <utility>
#include <vector>

namespace platform {

/// Why a request had no answer, or why none was sent: one line in words.
struct HTTPError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Whether nobody on the way can read along: HTTPS, or HTTP that stays on this computer.
bool isSecure(const QUrl& address);

/// One request. Nothing is added to the headers that would tell more than the transport needs.
struct HTTPRequest {
  using Headers = std::vector<std::pair<QByteArray, QByteArray>>;
  static constexpr qint64 usualLimit = 4 << 20;

  QByteArray method = "GET";
  QUrl url;
  Headers headers;
  std::optional<QByteArray> body;
  std::chrono::milliseconds patience{30000};  ///< the longest time without any progress
  qint64 bodyLimit = usualLimit;              ///< bytes; a longer successful answer is cut after one more
};

/// Whatever the server said; a redirect and a failure are answers, too.
struct HTTPAnswer {
  int status = 0;  ///< 0 if it wasn't HTTP
  QByteArray body;

  bool isSuccess() const { return status >= 200 && status <= 299; }
};

/// Sends requests by HTTP/1.1 over verified connections, each one once and on a connection of its own: no
/// cache, no cookies, no redirects followed. Anything but HTTPS is refused unless the host is the loopback.
/// Costs nothing before the first request. Main thread; the waiting is done elsewhere.
class HTTPClient {
 public:
  /// Bytes; an answer other than a success is read up to here.
  static constexpr qint64 failureLimit = 16 << 20;

  /// Throws `HTTPError`, or `Cancelled` soon after a stop is requested, from whatever thread, and after the
  /// end of the client itself.
  QCoro::Task<HTTPAnswer> send(HTTPRequest request, std::stop_token stop = {});

 private:
  QObject transfers_;  // each request under way is a child
};

}  // namespace platform
