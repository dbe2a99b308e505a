#include "Platform/Services/MediaPlayerService.h"

#include <QCoreApplication>
#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QVariantMap>
#include <cmath>
#include <utility>

namespace platform {

// The desktop calls slots and reads properties by these names.
// NOLINTBEGIN(readability-identifier-naming)

/// The application as such.
class MediaPlayerRoot final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
  Q_PROPERTY(QString Identity READ identity)
  Q_PROPERTY(QString DesktopEntry READ desktopEntry)
  Q_PROPERTY(bool CanQuit READ yes)
  Q_PROPERTY(bool CanRaise READ yes)
  Q_PROPERTY(bool HasTrackList READ no)
  Q_PROPERTY(QStringList SupportedUriSchemes READ none)
  Q_PROPERTY(QStringList SupportedMimeTypes READ none)

 public:
  explicit MediaPlayerRoot(MediaPlayerService& service) : QDBusAbstractAdaptor(&service), service_(service) {}

  QString identity() const { return QCoreApplication::applicationName(); }
  QString desktopEntry() const { return service_.desktopEntry_; }
  bool yes() const { return true; }
  bool no() const { return false; }
  QStringList none() const { return {}; }

 public Q_SLOTS:
  void Raise() { service_.commands_.raise(); }
  void Quit() { service_.commands_.quit(); }

 private:
  const MediaPlayerService& service_;
};

/// Its transport. What it can't do is there, too, and has no effect.
class MediaPlayerControls final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
  Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
  Q_PROPERTY(QVariantMap Metadata READ metadata)
  Q_PROPERTY(qlonglong Position READ position)
  Q_PROPERTY(double Rate READ one)
  Q_PROPERTY(double MinimumRate READ one)
  Q_PROPERTY(double MaximumRate READ one)
  Q_PROPERTY(double Volume READ one)
  Q_PROPERTY(bool CanControl READ yes)
  Q_PROPERTY(bool CanPlay READ yes)
  Q_PROPERTY(bool CanPause READ yes)
  Q_PROPERTY(bool CanGoPrevious READ yes)
  Q_PROPERTY(bool CanGoNext READ no)
  Q_PROPERTY(bool CanSeek READ no)

 public:
  explicit MediaPlayerControls(MediaPlayerService& service)
      : QDBusAbstractAdaptor(&service), service_(service) {}

  QString playbackStatus() const {
    static constexpr const char* names[] = {"Stopped", "Paused", "Playing"};
    return names[static_cast<int>(service_.state_.status)];
  }
  QVariantMap metadata() const {
    return {{"mpris:trackid", QVariant::fromValue(QDBusObjectPath("/current"))},
            {"xesam:title", service_.state_.title}};
  }
  qlonglong position() const { return std::llround(service_.commands_.position() * 1e6); }  // microseconds
  double one() const { return 1; }
  bool yes() const { return true; }
  bool no() const { return false; }

 public Q_SLOTS:
  void Play() { service_.commands_.play(); }
  void Pause() { service_.commands_.pause(); }
  void PlayPause() { service_.commands_.playPause(); }
  void Stop() { service_.commands_.stop(); }
  void Previous() { service_.commands_.previous(); }
  void Next() {}
  void Seek(qlonglong) {}
  void SetPosition(const QDBusObjectPath&, qlonglong) {}
  void OpenUri(const QString&) {}

 Q_SIGNALS:
  void Seeked(qlonglong position);

 private:
  const MediaPlayerService& service_;
};
// NOLINTEND(readability-identifier-naming)

namespace {

constexpr char objectPath[] = "/org/mpris/MediaPlayer2";

/// A call on the bus itself that has the player's name as its first argument.
QDBusMessage nameCall(const char* method) {
  auto call = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                             "org.freedesktop.DBus", method);
  return call << "org.mpris.MediaPlayer2." + QCoreApplication::applicationName().toLower();
}

}  // namespace

MediaPlayerService::MediaPlayerService(QString desktopEntry, Commands commands)
    : desktopEntry_(std::move(desktopEntry)),
      commands_(std::move(commands)),
      controls_(new MediaPlayerControls(*this)) {
  new MediaPlayerRoot(*this);
}

MediaPlayerService::~MediaPlayerService() {
  if (!hasAppeared_) return;
  QDBusConnection::sessionBus().send(nameCall("ReleaseName"));
  QDBusConnection::sessionBus().unregisterObject(objectPath);
}

void MediaPlayerService::appear() {
  if (hasAppeared_) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  hasAppeared_ = bus.registerObject(objectPath, this);
  if (hasAppeared_) bus.send(nameCall("RequestName") << 0U);  // no flags: stands in line behind another's
}

void MediaPlayerService::setState(const State& state) {
  if (state == state_) return;
  state_ = state;
  if (state.status == Status::playing) appear();
  if (!hasAppeared_) return;
  auto change =
      QDBusMessage::createSignal(objectPath, "org.freedesktop.DBus.Properties", "PropertiesChanged");
  change << "org.mpris.MediaPlayer2.Player"
         << QVariantMap{{"PlaybackStatus", controls_->playbackStatus()}, {"Metadata", controls_->metadata()}}
         << QStringList();
  QDBusConnection::sessionBus().send(change);
}

void MediaPlayerService::tellJump() {
  if (hasAppeared_) Q_EMIT controls_->Seeked(controls_->position());
}

}  // namespace platform

#include "MediaPlayerService.moc"
