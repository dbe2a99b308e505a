#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <functional>
#include <vector>

class QDBusPendingCallWatcher;

namespace platform {

/// Whether the desktop asks for reduced motion, from the settings portal. Main thread, never waits; where no
/// desktop answers it stays silent.
class MotionPreference final : public QObject {
  Q_OBJECT

 public:
  /// `onChange` is called from the event loop: with the desktop's answer if it is other than "all motion",
  /// and whenever it changes.
  explicit MotionPreference(std::function<void(bool reducesMotion)> onChange);
  ~MotionPreference() override;

  /// Asks and listens from now on; calls after the first one do nothing.
  void start();

 private Q_SLOTS:
  void hear(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void take(QDBusPendingCallWatcher& answer);
  void note(const QString& group, const QString& key, const QVariant& value);
  void tell();

  const std::function<void(bool)> onChange_;
  std::vector<bool> reduces_;  // what each of the settings says
  bool hasStarted_ = false;
  bool told_ = false;
};

}  // namespace platform
