#pragma once

#include <QEventLoop>
#include <QTimer>
#include <chrono>

#include "tests/support/EventLoopTest.h"

namespace platform {

/// Tests of what lives on the main thread's event loop and speaks to a sound server.
class SoundServerTest : public velmora::testing::EventLoopTest {
 protected:
  /// Serves the event loop until it is so; false when it takes longer than `limit`.
  template <class Condition>
  static bool comes(const Condition& condition, std::chrono::milliseconds limit) {
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
      if (condition()) loop.quit();
    });
    poll.start(std::chrono::milliseconds(2));
    QTimer::singleShot(limit, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
    return condition();
  }
};

}  // namespace platform
