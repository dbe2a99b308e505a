#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>

#include "Platform/Services/MotionPreference.h"
#include "tests/Platform/Services/SessionBus.h"
#include "tests/support/EventLoopTest.h"

namespace platform {

using Settings = QMap<QString, QVariantMap>;

/// The desktop's settings portal, on a connection of its own.
class SettingsPortal : public QDBusVirtualObject {
 public:
  explicit SettingsPortal(Settings settings) : settings_(std::move(settings)) {
    qDBusRegisterMetaType<Settings>();
    bus_.registerVirtualObject(path_, this);
    bus_.registerService("org.freedesktop.portal.Desktop");
  }
  ~SettingsPortal() override { bus_.unregisterService("org.freedesktop.portal.Desktop"); }

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (message.interface() != interface_ || message.member() != "ReadAll") return false;
    Settings asked;
    for (const QString& group : message.arguments().value(0).toStringList())
      if (settings_.contains(group)) asked[group] = settings_[group];
    ++questions;
    return bus.send(message.createReply(QVariant::fromValue(asked)));
  }
  void change(const QString& group, const QString& key, const QVariant& value) {
    auto signal = QDBusMessage::createSignal(path_, interface_, "SettingChanged");
    signal << group << key << QVariant::fromValue(QDBusVariant(value));
    bus_.send(signal);
  }
  int questions = 0;

 private:
  const QString path_ = "/org/freedesktop/portal/desktop";
  const QString interface_ = "org.freedesktop.portal.Settings";
  Settings settings_;
  QDBusConnection bus_ = QDBusConnection::connectToBus(testing::sessionBus(), "settings portal");
};

class MotionPreferenceTest : public velmora::testing::EventLoopTest {};

const QString gnome = "org.gnome.desktop.interface", appearance = "org.freedesktop.appearance";

TEST_F(MotionPreferenceTest, TellsWhatTheDesktopAsksForAndEveryChange) {
  SettingsPortal portal({{gnome, {{"enable-animations", false}, {"font-name", "Sans 11"}}},
                         {appearance, {{"color-scheme", 1U}}}});
  std::string told;
  MotionPreference preference([&](bool reducesMotion) { told += reducesMotion ? 'r' : 'a'; });
  preference.start();
  preference.start();
  const auto await = [](const auto& condition) {
    const QDeadlineTimer deadline(10000);
    while (!condition() && !deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return condition();
  };
  EXPECT_TRUE(await([&] { return told == "r"; }));
  const auto expectAfter = [&](const QString& group, const char* key, const QVariant& value,
                               const char* all) {
    portal.change(group, key, value);
    EXPECT_TRUE(await([&] { return told == all; })) << key << ": " << told;
  };
  expectAfter(gnome, "enable-animations", true, "ra");
  portal.change(gnome, "enable-animations", "no truth value");
  portal.change(gnome, "color-scheme", false);
  expectAfter(appearance, "reduced-motion", 1U, "rar");
  portal.change(gnome, "enable-animations", false);
  portal.change(appearance, "reduced-motion", 0U);  // the other still asks for it
  expectAfter(gnome, "enable-animations", true, "rara");
  EXPECT_EQ(portal.questions, 1);
}

}  // namespace platform
