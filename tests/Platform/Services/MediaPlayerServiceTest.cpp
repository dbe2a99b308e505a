#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDeadlineTimer>

#include "Platform/Services/MediaPlayerService.h"
#include "tests/Platform/Services/SessionBus.h"
#include "tests/support/EventLoopTest.h"

namespace platform {

constexpr char root[] = "org.mpris.MediaPlayer2";
constexpr char player[] = "org.mpris.MediaPlayer2.Player";
constexpr char properties[] = "org.freedesktop.DBus.Properties";

template <class Condition>
bool await(const Condition& condition) {
  const QDeadlineTimer deadline(10000);
  while (!condition() && !deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  return condition();
}

/// What the desktop sees: an own connection to the bus and the signals that came by it.
class PlayerClient : public QObject {
  Q_OBJECT

 public:
  PlayerClient() {
    for (const char* name : {"PropertiesChanged", "Seeked"})
      bus_.connect(service_, path_, {}, name, this, SLOT(hear(QDBusMessage)));
  }
  bool isThere() { return bus_.interface()->isServiceRegistered(service_); }
  /// The reply's values; an error's name and text.
  QVariantList call(const char* interface, const char* method, const QVariantList& arguments = {}) {
    auto message = QDBusMessage::createMethodCall(service_, path_, interface, method);
    message.setArguments(arguments);
    const QDBusPendingCall call = bus_.asyncCall(message);
    EXPECT_TRUE(await([&call] { return call.isFinished(); })) << method;
    return call.reply().arguments() << (call.isError() ? QVariantList{call.error().name()} : QVariantList{});
  }
  QVariantMap all(const char* interface) {
    return qdbus_cast<QVariantMap>(call(properties, "GetAll", {interface}).value(0));
  }
  QList<QDBusMessage> heard;

 public Q_SLOTS:
  void hear(const QDBusMessage& message) { heard << message; }

 private:
  const QString service_ = "org.mpris.MediaPlayer2.player";
  const QString path_ = "/org/mpris/MediaPlayer2";
  QDBusConnection bus_ = QDBusConnection::connectToBus(testing::sessionBus(), "desktop");
};

class MediaPlayerServiceTest : public velmora::testing::EventLoopTest {};

TEST_F(MediaPlayerServiceTest, ServesTheDesktopFromTheFirstPlayToTheEnd) {
  QCoreApplication::setApplicationName("Player");
  PlayerClient desktop;
  QStringList asked;
  const auto note = [&asked](const char* what) { return [&asked, what] { asked << what; }; };
  {
    MediaPlayerService service(
        "org.test.Player", {note("Play"), note("Pause"), note("PlayPause"), note("Stop"), note("Previous"),
                            [] { return 1.5; }, note("Raise"), note("Quit")});
    using enum MediaPlayerService::Status;
    service.setState({paused, "Night"});
    EXPECT_FALSE(desktop.isThere());
    service.setState({playing, "Night"});
    EXPECT_TRUE(await([&] { return desktop.isThere(); }));

    EXPECT_EQ(desktop.all(root)["DesktopEntry"], "org.test.Player");
    const QVariantMap state = desktop.all(player);
    EXPECT_EQ(state["PlaybackStatus"], "Playing");
    EXPECT_EQ(state["Position"], 1500000);
    EXPECT_EQ(qdbus_cast<QVariantMap>(state["Metadata"])["xesam:title"], "Night");
    const QVariantList louder{player, "Volume", QVariant::fromValue(QDBusVariant(0.5))};
    EXPECT_EQ(desktop.call(properties, "Set", louder).last(), "org.freedesktop.DBus.Error.PropertyReadOnly");

    const QStringList methods{"Play", "Pause", "PlayPause", "Stop", "Previous"};
    for (const QString& method : methods) EXPECT_TRUE(desktop.call(player, qPrintable(method)).isEmpty());
    for (const char* method : {"Raise", "Quit"}) EXPECT_TRUE(desktop.call(root, method).isEmpty());
    EXPECT_TRUE(desktop.call(player, "Seek", {qlonglong{1}}).isEmpty());  // in vain, but no error
    EXPECT_EQ(asked, (methods + QStringList{"Raise", "Quit"}));

    desktop.heard.clear();
    service.setState({paused, "Night"});
    service.setState({paused, "Night"});  // no news
    service.tellJump();
    ASSERT_TRUE(await([&] { return desktop.heard.size() == 2; }));
    EXPECT_EQ(qdbus_cast<QVariantMap>(desktop.heard[0].arguments()[1])["PlaybackStatus"], "Paused");
    EXPECT_EQ(desktop.heard[1].arguments(), QVariantList{1500000LL});
  }
  EXPECT_TRUE(await([&] { return !desktop.isThere(); }));
}

}  // namespace platform

#include "MediaPlayerServiceTest.moc"
