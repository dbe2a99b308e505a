#pragma once

#include <exception>
#include <functional>

#include "Platform/Services/UpdateFeed.h"

namespace platform {

/// How far an update is when it is shown.
struct UpdateState {
  enum class Stage { notDownloaded, downloaded };
  Stage stage = Stage::notDownloaded;
  bool isUserInitiated = false;
};

/// What an update service asks and tells as it goes. Main thread.
class UpdateServiceDelegate {
 public:
  virtual ~UpdateServiceDelegate() = default;

  /// Whether the delegate may show the updates that a scheduled check finds.
  virtual bool supportsGentleScheduledUpdateReminders() const = 0;
  /// Whether the service shows this one in its own window all the same.
  virtual bool standardUserDriverShouldHandleShowingScheduledUpdate(const UpdateOffer& update,
                                                                    bool inImmediateFocus) = 0;
  virtual void standardUserDriverWillHandleShowingUpdate(bool handleShowingUpdate, const UpdateOffer& update,
                                                         const UpdateState& state) = 0;
  virtual void didFindValidUpdate(const UpdateOffer& update) = 0;
  /// The update is there and will take the program's place when the process ends; the block has it end, and
  /// start again, at once. True if the delegate tells the user.
  virtual bool willInstallUpdateOnQuit(const UpdateOffer& update,
                                       std::function<void()> immediateInstallationBlock) = 0;
  /// What the service had to do about an update is done, or the user wanted nothing done.
  virtual void standardUserDriverWillFinishUpdateSession() = 0;
  virtual void didAbortWithError(const std::exception& error) = 0;
};

}  // namespace platform
