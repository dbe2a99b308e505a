#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Services/UpdateController.h"
#include "Platform/Services/UpdateServiceDelegate.h"
#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/Observed.h"

namespace velmora {

/// Keeps what the update service finds until the user has time for it, and sees to it that no restart takes
/// anything unsaved or running with it. Main thread.
class AppUpdater final : public platform::UpdateServiceDelegate {
 public:
  using MakeController =
      std::function<std::unique_ptr<platform::UpdateController>(platform::UpdateServiceDelegate& delegate)>;

  /// The controller is made when it is first needed.
  explicit AppUpdater(MakeController makeController) : makeController_(std::move(makeController)) {}

  Observed<std::optional<std::string>, AppUpdater> availableVersion;  ///< of the update on offer
  Observed<bool, AppUpdater> readyToInstall;  ///< it is there and waits for the application to end
  Observed<bool, AppUpdater> dismissed;       ///< the user pressed "Later"
  Observed<std::optional<std::string>, AppUpdater> errorMessage;
  Observed<QPointer<AppModel>, AppUpdater> model;  ///< null once it is gone

  /// For the first appearance of the studio; a further call only replaces the model.
  void start(AppModel& newModel);
  /// Nothing in the studio would be lost by a restart. Changes with the model's fields.
  bool canRestart() const;
  /// The notice's main button: installs what is ready, or gets what was found.
  void installUpdate();
  /// The notice goes until there is something new to tell.
  void dismiss() { dismissed.set(true); }
  /// The user wants to know.
  void checkForUpdates() { controller().checkForUpdates(); }
  /// Whether an update takes the program's place by itself.
  bool canInstall() { return controller().canInstall(); }

  bool supportsGentleScheduledUpdateReminders() const override { return true; }
  bool standardUserDriverShouldHandleShowingScheduledUpdate(const platform::UpdateOffer& update,
                                                            bool inImmediateFocus) override;
  void standardUserDriverWillHandleShowingUpdate(bool handleShowingUpdate,
                                                 const platform::UpdateOffer& update,
                                                 const platform::UpdateState& state) override;
  void didFindValidUpdate(const platform::UpdateOffer& update) override;
  bool willInstallUpdateOnQuit(const platform::UpdateOffer& update,
                               std::function<void()> immediateInstallationBlock) override;
  void standardUserDriverWillFinishUpdateSession() override;
  void didAbortWithError(const std::exception& error) override;

 private:
  platform::UpdateController& controller();
  void offer(const platform::UpdateOffer& update);
  void withdraw();

  const MakeController makeController_;
  std::unique_ptr<platform::UpdateController> controller_;
  std::function<void()> installHandler_;
  bool started_ = false;
};

}  // namespace velmora
