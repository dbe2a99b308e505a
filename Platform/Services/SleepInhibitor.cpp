#include "Platform/Services/SleepInhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

namespace platform {
namespace {

constexpr char portal[] = "org.freedesktop.portal.Desktop";
constexpr unsigned suspend = 4;  // of the portal's flags

}  // namespace

/// What was asked of the portal: it has to be closed by its path, which only the answer tells.
struct SleepInhibitor::Request {
  QString path;
  bool isOver = false;

  void close() const {
    if (path.isEmpty()) return;
    QDBusConnection::sessionBus().send(
        QDBusMessage::createMethodCall(portal, path, "org.freedesktop.portal.Request", "Close"));
  }
};

SleepInhibitor::SleepInhibitor(const QString& reason) : request_(std::make_shared<Request>()) {
  auto question = QDBusMessage::createMethodCall(portal, "/org/freedesktop/portal/desktop",
                                                 "org.freedesktop.portal.Inhibit", "Inhibit");
  question << QString() << suspend << QVariantMap{{"reason", reason}};
  auto* answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question));
  QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, request = request_] {
    const QDBusPendingReply<QDBusObjectPath> reply = *answer;
    if (reply.isValid()) request->path = reply.value().path();
    if (request->isOver) request->close();
    answer->deleteLater();
  });
}

SleepInhibitor::~SleepInhibitor() {
  request_->isOver = true;
  request_->close();
}

}  // namespace platform
