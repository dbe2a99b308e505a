#include "Platform/Services/HTTPClient.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QHostAddress>
#include <QIODevice>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPromise>
#include <QSslError>
#include <QTimer>
#include <algorithm>
#include <functional>

#include "Platform/Tasks/Cancelled.h"
#include "Platform/Tasks/Outcome.h"

namespace platform {
namespace {

using Answer = Outcome<HTTPAnswer>;

constexpr char lateness[] = "The server did not answer in time.";

/// A body that goes out once: the transport sends a request again when the connection ends before the answer,
/// unless it can't start the body afresh. So a request without a body has an empty one.
class Body final : public QIODevice {
 public:
  explicit Body(QByteArray bytes) : bytes_(std::move(bytes)) { open(ReadOnly | Unbuffered); }

  qint64 size() const override { return bytes_.size(); }
  bool reset() override { return false; }

 protected:
  qint64 readData(char* data, qint64 longest) override {
    const qint64 count = std::min(longest, size() - pos());
    std::copy_n(bytes_.data() + pos(), count, data);
    return count;
  }
  qint64 writeData(const char*, qint64) override { return -1; }

 private:
  const QByteArray bytes_;
};

/// A line's end in a header would begin another one.
bool isOneLine(const QByteArray& text) {
  return std::ranges::none_of(text, [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
}

/// Empty if the request may go out.
QString refusal(const HTTPRequest& request) {
  const QUrl& url = request.url;
  if (!url.isValid() || url.host().isEmpty()) return "The address of the server can't be used.";
  if (!isSecure(url)) return "The address of the server is not secure. It has to start with \"https\".";
  for (const auto& [name, value] : request.headers)
    if (!isOneLine(name) || !isOneLine(value)) return "The request can't be sent as it is.";
  return {};
}

/// "Studio/1.2.3"
QByteArray agent() {
  const QString version = QCoreApplication::applicationVersion();
  return (QCoreApplication::applicationName() + (version.isEmpty() ? QString() : "/" + version)).toUtf8();
}

QNetworkRequest transportRequest(const HTTPRequest& request) {
  using Request = QNetworkRequest;
  Request result(request.url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment));
  result.setAttribute(Request::CacheLoadControlAttribute, Request::AlwaysNetwork);
  result.setAttribute(Request::CacheSaveControlAttribute, false);
  result.setAttribute(Request::CookieLoadControlAttribute, Request::Manual);
  result.setAttribute(Request::CookieSaveControlAttribute, Request::Manual);
  result.setAttribute(Request::AuthenticationReuseAttribute, Request::Manual);
  result.setAttribute(Request::RedirectPolicyAttribute, Request::ManualRedirectPolicy);
  result.setAttribute(Request::Http2AllowedAttribute, false);
  result.setRawHeader("Connection", "close");
  // These three would be sent in any case, and would tell more: the transport's name, the user's language.
  result.setRawHeader("User-Agent", agent());
  result.setRawHeader("Accept-Language", "*");
  result.setRawHeader("Accept-Encoding", "identity");
  for (const auto& [name, value] : request.headers) result.setRawHeader(name, value);
  return result;
}

/// In plain words, without the address. `insecurity` is the first fault of the certificate.
QString reasonOf(QNetworkReply::NetworkError error, const QString& insecurity) {
  switch (error) {
    case QNetworkReply::ConnectionRefusedError:
      return "The server refused the connection.";
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ContentReSendError:
      return "The server closed the connection before its answer was complete.";
    case QNetworkReply::HostNotFoundError:
      return "The server was not found. Is this computer online?";
    case QNetworkReply::TimeoutError:
      return lateness;
    case QNetworkReply::SslHandshakeFailedError:
      return "No secure connection to the server could be made. " + insecurity;
    case QNetworkReply::ProtocolFailure:
      return "The server's answer could not be understood.";
    default:
      return "The connection to the server failed.";
  }
}

/// One request under way. It has a transport and so a connection of its own, as a kept one may end just when
/// the next request goes out. Gives one answer, at its destruction at the latest.
class Transfer final : public QObject {
 public:
  Transfer(QObject* parent, const HTTPRequest& request, std::stop_token stop)
      : QObject(parent),
        upload_(request.body.value_or(QByteArray())),
        reply_(*transport_.sendCustomRequest(transportRequest(request), request.method, &upload_)),
        limit_(request.bodyLimit),
        stop_(std::move(stop)),
        onStop_(stop_, [this] {
          QMetaObject::invokeMethod(
              this, [this] { cancel(); }, Qt::QueuedConnection);
        }) {
    promise_.start();
    patience_.setSingleShot(true);
    patience_.setInterval(request.patience);
    connect(&patience_, &QTimer::timeout, this, [this] { fail(lateness); });
    connect(&reply_, &QNetworkReply::uploadProgress, this, [this] { live(); });
    connect(&reply_, &QNetworkReply::metaDataChanged, this, [this] { live(); });
    connect(&reply_, &QNetworkReply::readyRead, this, [this] { read(); });
    connect(&reply_, &QNetworkReply::sslErrors, this,
            [this](const QList<QSslError>& errors) { insecurity_ = errors.value(0).errorString() + "."; });
    connect(&reply_, &QNetworkReply::finished, this, [this] { finish(); });
    live();
  }
  ~Transfer() override {
    reply_.disconnect(this);
    settle({.error = std::make_exception_ptr(Cancelled())});
  }

  QFuture<Answer> answer() const { return promise_.future(); }

 private:
  void live() { patience_.start(); }

  bool hasFailed() const { return status() < 200 || status() > 299; }
  int status() const { return reply_.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); }

  /// Most statuses that aren't a success count as errors here; those below 100 are the connection's.
  bool isAnswered() const {
    const auto error = reply_.error();
    const bool isConnected = error == QNetworkReply::NoError || error > QNetworkReply::UnknownNetworkError;
    return status() != 0 && isConnected && error != QNetworkReply::ProtocolFailure;
  }

  /// A connection that ends too early doesn't always count as an error here. Not so where no length was told.
  bool isWhole() const {
    const QVariant length = reply_.header(QNetworkRequest::ContentLengthHeader);
    return status() == 304 || !length.isValid() || body_.size() >= length.toLongLong();
  }

  /// Takes what has come, and ends once that is more than was asked for.
  void read() {
    if (isOver_) return;
    live();
    const qint64 enough = hasFailed() ? HTTPClient::failureLimit : limit_ + 1;
    body_ += reply_.read(enough - body_.size());
    if (body_.size() == enough) succeed();
  }

  void finish() {
    if (isOver_) return;
    if (stop_.stop_requested()) return cancel();
    if (!isAnswered()) return fail(reasonOf(reply_.error(), insecurity_));
    read();
    isWhole() ? succeed() : fail(reasonOf(QNetworkReply::RemoteHostClosedError, {}));
  }

  void succeed() { end({.value = HTTPAnswer{status(), body_}}); }
  void fail(const QString& reason) {
    end({.error = std::make_exception_ptr(HTTPError(reason.toStdString()))});
  }
  void cancel() { end({.error = std::make_exception_ptr(Cancelled())}); }

  /// Whatever is still to come or to go ends with this.
  void end(Answer answer) {
    settle(std::move(answer));
    deleteLater();
  }

  void settle(Answer answer) {
    if (std::exchange(isOver_, true)) return;
    promise_.addResult(std::move(answer));
    promise_.finish();
  }

  Body upload_;
  QNetworkAccessManager transport_;
  QNetworkReply& reply_;
  const qint64 limit_;
  QByteArray body_;
  QString insecurity_;
  QTimer patience_;
  QPromise<Answer> promise_;
  bool isOver_ = false;
  const std::stop_token stop_;
  const std::stop_callback<std::function<void()>> onStop_;  // last: may call at once
};

}  // namespace

bool isSecure(const QUrl& address) {
  const QString host = address.host();
  const bool isHere = host == "localhost" || QHostAddress(host).isLoopback();
  return address.isValid() && !host.isEmpty() &&
         (address.scheme() == "https" || (isHere && address.scheme() == "http"));
}

QCoro::Task<HTTPAnswer> HTTPClient::send(HTTPRequest request, std::stop_token stop) {
  if (stop.stop_requested()) throw Cancelled();
  if (const QString reason = refusal(request); !reason.isEmpty()) throw HTTPError(reason.toStdString());

  const auto* const transfer = new Transfer(&transfers_, request, std::move(stop));
  const QFuture<Answer> future = transfer->answer();
  Answer answer = co_await future;
  co_return answer.take();
}

}  // namespace platform
