#pragma once

namespace platform {

/// What an application wants of an update service. Main thread.
class UpdateController {
 public:
  virtual ~UpdateController() = default;

  /// Begins with the scheduled checks. Throws `UpdateFeedError` if no check can ever succeed.
  virtual void startUpdater() = 0;
  /// Checks because the user wants it, and tells the outcome, whatever it is.
  virtual void checkForUpdates() = 0;
  /// Whether an update can take the program's place; otherwise there is only a page to get it from.
  virtual bool canInstall() const = 0;
};

}  // namespace platform
