#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <gmock/gmock.h>
#include <optional>
#include <thread>

#include "Platform/Services/HTTPClient.h"
#include "Platform/Tasks/Cancelled.h"
#include "Platform/Tasks/ResultOf.h"
#include "tests/support/EventLoopTest.h"
#include "tests/support/service/ServiceDouble.h"

namespace platform {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::Pair;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;
using velmora::testing::ServiceDouble;

class HTTPClientTest : public velmora::testing::EventLoopTest {
 protected:
  static HTTPRequest to(const ServiceDouble& service, const QString& path = "/place") {
    QUrl url = service.address();
    url.setPath(path);
    return {.url = url};
  }
  HTTPAnswer answer(HTTPRequest request) { return resultOf(client->send(std::move(request))); }
  /// The reason in words.
  std::string failure(HTTPRequest request) {
    try {
      return "answered " + std::to_string(answer(std::move(request)).status);
    } catch (const HTTPError& error) {
      return error.what();
    }
  }

  ServiceDouble service;
  std::optional<HTTPClient> client{std::in_place};
};

/// Says the same to all who come, byte by byte, and ends each connection.
class BluntServer : public QTcpServer {
 public:
  explicit BluntServer(const QByteArray& text) {
    connect(this, &QTcpServer::newConnection, this, [this, text] {
      QTcpSocket* const socket = nextPendingConnection();
      connect(socket, &QTcpSocket::readyRead, this, [this, socket, text] {
        heard << socket->readAll();
        socket->write(text);
        socket->disconnectFromHost();
      });
    });
    listen(QHostAddress::LocalHost);
  }
  HTTPRequest request() const {
    return {.url = QUrl(QString("http://127.0.0.1:%1/").arg(serverPort())), .patience = 10s};
  }
  QList<QByteArray> heard;
};

TEST_F(HTTPClientTest, HandsOnEveryStatusWithItsBody) {
  for (const int status : {200, 201, 299, 300, 304, 400, 401, 403, 404, 407, 409, 413, 429, 500, 503}) {
    service.answer("/place", status, status == 304 ? "" : "{\"error\":\"Grüße, 日本 🎹\"}");
    const HTTPAnswer got = answer(to(service));
    EXPECT_EQ(got.status, status);
    EXPECT_EQ(got.body, status == 304 ? "" : "{\"error\":\"Grüße, 日本 🎹\"}") << status;
    EXPECT_EQ(got.isSuccess(), status < 300);
  }
  service.redirect("/place", service.address().toString().toStdString() + "/elsewhere");
  EXPECT_EQ(answer(to(service)).status, 302);
  EXPECT_TRUE(service.requests("/elsewhere").empty());
}

TEST_F(HTTPClientTest, SendsWhatItIsGivenAndNothingThatTells) {
  const QByteArray body = "{\"username\":\"Ünï 🎹\"}";
  QUrl url = service.address();
  url.setUrl(url.toString().replace("//", "//someone:secret@") + "/place?order=newest&page=1#here");
  answer({.url = url});
  answer({.method = "PUT",
          .url = url,
          .headers = {{"Accept", "application/json"}, {"Content-Type", "audio/wav"}},
          .body = body});
  const auto requests = service.requests();
  ASSERT_EQ(requests.size(), 2u);
  const auto host = service.address().authority().toStdString();
  EXPECT_EQ(requests[0].query, "order=newest&page=1");
  EXPECT_THAT(requests[0].headers,
              UnorderedElementsAre(Pair("Host", host), Pair("Connection", "close"),
                                   Pair("Content-Length", "0"), Pair("User-Agent", "test"),
                                   Pair("Accept-Language", "*"), Pair("Accept-Encoding", "identity")));
  EXPECT_EQ(requests[1].method + requests[1].body, "PUT" + body.toStdString());
  EXPECT_EQ(requests[1].header("content-type"), "audio/wav");
  EXPECT_EQ(requests[1].header("Accept"), "application/json");
  EXPECT_EQ(requests[1].header("Content-Length"), std::to_string(body.size()));

  BluntServer baker("HTTP/1.1 200 OK\r\nSet-Cookie: a=b; Max-Age=9999\r\nContent-Length: 0\r\n\r\n");
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(answer(baker.request()).isSuccess());
  EXPECT_FALSE(baker.heard[1].toLower().contains("cookie"));
}

TEST_F(HTTPClientTest, SendsOnceOnlyAndTakesNoHalfAnswer) {
  for (const char* text : {"", "no HTTP at all\r\n\r\n", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc",
                           "HTTP/1.1 500 Oh\r\nContent-Length: 10\r\n\r\nabc"})
    for (const char* method : {"GET", "POST", "DELETE"}) {
      BluntServer server(text);
      HTTPRequest request = server.request();
      request.method = method;
      EXPECT_EQ(failure(request), "The server closed the connection before its answer was complete.") << text;
      EXPECT_EQ(server.heard.size(), 1) << method << text;
    }
  service.cut("/place");
  EXPECT_THAT(failure(to(service)), StartsWith("The server closed"));
  HTTPRequest unheard;
  {
    const BluntServer gone("");
    unheard = gone.request();
  }
  EXPECT_EQ(failure(unheard), "The server refused the connection.");
}

TEST_F(HTTPClientTest, WaitsAsLongAsThereIsProgress) {
  HTTPRequest request = to(service);
  request.patience = 100ms;
  service.hang("/place");
  EXPECT_EQ(failure(request), "The server did not answer in time.");
  service.pour("/place", 1000);
  service.trickle("/place", 2, 5s);  // the head comes at once
  EXPECT_EQ(failure(request), "The server did not answer in time.");

  request.patience = 800ms;
  service.pour("/place", 1000);
  service.trickle("/place", 10, 120ms);
  EXPECT_EQ(answer(request).body.size(), 1000);

  QTcpServer reader;  // takes its time, but for the end, which the system has taken before
  QTimer beat;
  qint64 toRead = 44 << 20;
  QObject::connect(&reader, &QTcpServer::newConnection, &reader, [&] {
    QTcpSocket* const socket = reader.nextPendingConnection();
    socket->setReadBufferSize(1 << 20);
    QObject::connect(&beat, &QTimer::timeout, socket, [&, socket] {
      toRead -= socket->readAll().size();
      if (toRead < 14 << 20) beat.setInterval(0);
      if (toRead > 0) return;
      beat.stop();
      socket->write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    });
  });
  reader.listen(QHostAddress::LocalHost);
  beat.start(40ms);
  request.method = "PUT";
  request.url.setPort(reader.serverPort());
  request.body = QByteArray(toRead, 'x');
  EXPECT_EQ(answer(request).status, 200);
}

TEST_F(HTTPClientTest, CutsSuccessfulBodiesOneByteBeyondTheirLimit) {
  HTTPRequest request = to(service);
  request.bodyLimit = 3'800'000;
  const std::pair<std::optional<std::size_t>, qint64> cases[] = {{0, 0},
                                                                 {3'800'000, 3'800'000},
                                                                 {3'800'001, 3'800'001},
                                                                 {9'000'000, 3'800'001},
                                                                 {std::nullopt, 3'800'001}};
  for (const auto& [sent, taken] : cases) {
    service.pour("/place", sent);
    EXPECT_EQ(answer(request).body.size(), taken);
  }
  request.bodyLimit = 10;
  service.answer("/place", 500, std::string(100'000, 'x'));
  EXPECT_EQ(answer(request).body.size(), 100'000);
  service.answer("/place", 500, std::string(HTTPClient::failureLimit + 1, 'x'));
  EXPECT_EQ(answer(request).body.size(), HTTPClient::failureLimit);
}

TEST_F(HTTPClientTest, TrustsVerifiedCertificatesOnly) {
  ServiceDouble secure(ServiceDouble::Transport::encrypted);
  secure.pour("", 3'800'000, ServiceDouble::always);
  EXPECT_THAT(failure(to(secure)),
              HasSubstr("No secure connection to the server could be made. The certificate"));
  EXPECT_TRUE(secure.requests().empty());

  const QSslConfiguration usual = QSslConfiguration::defaultConfiguration();
  QSslConfiguration trusting = usual;
  trusting.addCaCertificate(QSslCertificate(QByteArray::fromStdString(secure.certificate())));
  QSslConfiguration::setDefaultConfiguration(trusting);
  client.emplace();
  EXPECT_EQ(answer(to(secure)).body.size(), 3'800'000);
  HTTPRequest misnamed = to(secure);
  misnamed.url.setHost("localhost");
  EXPECT_THAT(failure(misnamed), HasSubstr("host name did not match"));
  QSslConfiguration::setDefaultConfiguration(usual);
}

TEST_F(HTTPClientTest, RefusesWhatIsNeitherSecureNorLocal) {
  const QString port = QString::number(service.address().port());
  for (const QString url :
       {"http://0.0.0.0:%1/", "http://example.org:%1/", "http://127.0.0.1.example.org:%1/",
        "http://localhost.example.org:%1/", "ftp://127.0.0.1:%1/"})
    EXPECT_THAT(failure({.url = QUrl(url.arg(port))}),
                StartsWith("The address of the server is not secure."));
  for (const QString url : {"", "https://", "place", "file:///etc/hostname"})
    EXPECT_EQ(failure({.url = QUrl(url)}), "The address of the server can't be used.");
  for (const QString url : {"http://LOCALHOST:%1/", "http://127.0.0.1:%1/"})
    EXPECT_EQ(failure({.url = QUrl(url.arg(port))}), "answered 404");
  EXPECT_EQ(failure({.url = service.address(), .headers = {{"Authorization", "a\r\nX: b"}}}),
            "The request can't be sent as it is.");
  EXPECT_EQ(service.requests().size(), 2u);
}

TEST_F(HTTPClientTest, EndsWhenItIsToldToOrGoes) {
  std::stop_source stop;
  service.hang("", ServiceDouble::always);
  auto stopped = client->send(to(service), stop.get_token());
  EXPECT_TRUE(service.await("/place"));
  std::thread([&] { stop.request_stop(); }).join();
  EXPECT_THROW(resultOf(std::move(stopped)), Cancelled);
  EXPECT_THROW(resultOf(client->send(to(service), stop.get_token())), Cancelled);
  EXPECT_EQ(service.requests().size(), 1u);

  auto orphaned = client->send(to(service));
  client->send(to(service));  // nobody waits
  EXPECT_TRUE(service.await("/place", 3));
  client.reset();
  EXPECT_THROW(resultOf(std::move(orphaned)), Cancelled);
}

}  // namespace
}  // namespace platform
