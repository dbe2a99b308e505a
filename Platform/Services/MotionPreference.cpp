#include "Platform/Services/MotionPreference.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>
#include <algorithm>
#include <array>
#include <utility>

namespace platform {
namespace {

constexpr char service[] = "org.freedesktop.portal.Desktop";
constexpr char path[] = "/org/freedesktop/portal/desktop";
constexpr char interface[] = "org.freedesktop.portal.Settings";

/// The portal's settings by group and key.
using Settings = QMap<QString, QVariantMap>;

/// A setting that speaks of motion; desktops have some of them. One that asks for less is enough.
struct MotionSetting {
  const char* group;
  const char* key;
  bool (*reduces)(const QVariant& value);
};
constexpr std::array motionSettings{
    MotionSetting{"org.freedesktop.appearance", "reduced-motion",
                  [](const QVariant& value) { return value.toUInt() == 1; }},
    MotionSetting{
        "org.gnome.desktop.interface", "enable-animations",
        [](const QVariant& value) { return value.metaType().id() == QMetaType::Bool && !value.toBool(); }},
};

QStringList groups() {
  QStringList names;
  for (const MotionSetting& setting : motionSettings) names << setting.group;
  return names;
}

}  // namespace

MotionPreference::MotionPreference(std::function<void(bool reducesMotion)> onChange)
    : onChange_(std::move(onChange)), reduces_(motionSettings.size()) {}

MotionPreference::~MotionPreference() = default;

/// Listens before it asks, so that no change falls in between. The slot is found by the names of its types,
/// which only registered types have.
void MotionPreference::start() {
  if (std::exchange(hasStarted_, true)) return;
  qDBusRegisterMetaType<Settings>();
  qRegisterMetaType<QDBusVariant>();
  QDBusConnection bus = QDBusConnection::sessionBus();
  bus.connect(service, path, interface, "SettingChanged", this, SLOT(hear(QString, QString, QDBusVariant)));
  auto question = QDBusMessage::createMethodCall(service, path, interface, "ReadAll");
  question << groups();
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] { take(*answer); });
}

void MotionPreference::take(QDBusPendingCallWatcher& answer) {
  const QDBusPendingReply<Settings> reply = answer;
  answer.deleteLater();
  if (!reply.isValid()) return;
  const Settings settings = reply.value();
  for (auto [group, values] : settings.asKeyValueRange())
    for (auto [key, value] : values.asKeyValueRange()) note(group, key, value);
  tell();
}

void MotionPreference::hear(const QString& group, const QString& key, const QDBusVariant& value) {
  note(group, key, value.variant());
  tell();
}

void MotionPreference::note(const QString& group, const QString& key, const QVariant& value) {
  for (std::size_t index = 0; index < motionSettings.size(); ++index) {
    const MotionSetting& setting = motionSettings[index];
    if (group == setting.group && key == setting.key) reduces_[index] = setting.reduces(value);
  }
}

void MotionPreference::tell() {
  const bool reducesMotion = std::ranges::count(reduces_, true) > 0;
  if (std::exchange(told_, reducesMotion) != reducesMotion) onChange_(reducesMotion);
}

}  // namespace platform
