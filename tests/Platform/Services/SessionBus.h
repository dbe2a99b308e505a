#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>

namespace platform::testing {

/// A session bus of the process's own, from the first call on and for all its tests: the connection to it is
/// kept for the whole process. Returns the bus's address.
inline QString sessionBus() {
  struct Bus : QProcess {
    QString address;
    Bus() {
      start("dbus-daemon", {"--session", "--print-address", "--nofork"});
      waitForReadyRead();
      address = readLine().trimmed();
      qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    }
    ~Bus() override {
      kill();
      waitForFinished();
    }
  };
  static Bus bus;
  return bus.address;
}

}  // namespace platform::testing
