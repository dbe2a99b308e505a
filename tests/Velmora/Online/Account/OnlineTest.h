#pragma once

#include <QDeadlineTimer>
#include <QSettings>

#include "Platform/Services/HTTPClient.h"
#include "Platform/Services/Preferences.h"
#include "Platform/Tasks/ResultOf.h"
#include "tests/support/EventLoopTest.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Variable.h"
#include "tests/support/service/ServiceDouble.h"

namespace velmora::testing {

constexpr char customerID[] = "11111111-2222-3333-4444-5555ABCDEF00";

/// A service on the loopback, a client of it, and preferences that begin empty in a place of their own.
class OnlineTest : public EventLoopTest {
 protected:
  static bool spinUntil(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(10000);
    while (!condition() && !deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return condition();
  }

  OnlineTest() { QSettings("Orrin", "Velmora").clear(); }

  static inline const TemporaryFolder home_;  // one for all, as the library asks for it once
  static inline const Variable configuration_{"XDG_CONFIG_HOME", home_.path().c_str()};
  ServiceDouble service_;
  platform::HTTPClient client_;
  platform::Preferences preferences_;
};

}  // namespace velmora::testing
