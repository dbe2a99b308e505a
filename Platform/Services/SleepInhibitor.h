#pragma once

#include <QString>
#include <memory>

namespace platform {

/// Asks the desktop not to send the computer to sleep while it lives. Main thread, never waits; where no
/// desktop answers it does nothing, silently.
class SleepInhibitor {
 public:
  /// The reason is one that the desktop may show to the user.
  explicit SleepInhibitor(const QString& reason);
  ~SleepInhibitor();
  SleepInhibitor(const SleepInhibitor&) = delete;
  SleepInhibitor& operator=(const SleepInhibitor&) = delete;

 private:
  struct Request;
  std::shared_ptr<Request> request_;  // also the answer's, which may come later than the end
};

}  // namespace platform
