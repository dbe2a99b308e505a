#include "Velmora/Online/Updates/AppUpdater.h"

#include <utility>

namespace velmora {

void AppUpdater::start(AppModel& newModel) {
  model.set(&newModel);
  if (std::exchange(started_, true)) return;
  try {
    controller().startUpdater();
  } catch (const std::exception&) {
    errorMessage.set("Update checks could not start. You can keep working and try again later.");
  }
}

bool AppUpdater::canRestart() const {
  const AppModel* const current = model();
  return current && !current->isRecording() && !current->isAudioBusy() && !current->isProjectBusy() &&
         !current->pendingTake() && !current->exportTask();
}

// A copy of the block, as what it does may withdraw the offer.
void AppUpdater::installUpdate() {
  if (!canRestart()) return;
  const auto install = installHandler_;
  install ? install() : checkForUpdates();
}

bool AppUpdater::standardUserDriverShouldHandleShowingScheduledUpdate(const platform::UpdateOffer&, bool) {
  return false;
}

void AppUpdater::standardUserDriverWillHandleShowingUpdate(bool handleShowingUpdate,
                                                           const platform::UpdateOffer& update,
                                                           const platform::UpdateState&) {
  if (!handleShowingUpdate) offer(update);
}

void AppUpdater::didFindValidUpdate(const platform::UpdateOffer& update) { offer(update); }

bool AppUpdater::willInstallUpdateOnQuit(const platform::UpdateOffer& update,
                                         std::function<void()> immediateInstallationBlock) {
  installHandler_ = std::move(immediateInstallationBlock);
  readyToInstall.set(true);
  offer(update);
  return true;
}

void AppUpdater::standardUserDriverWillFinishUpdateSession() {
  if (!installHandler_) withdraw();
}

void AppUpdater::didAbortWithError(const std::exception&) {
  installHandler_ = {};
  withdraw();
}

platform::UpdateController& AppUpdater::controller() {
  if (!controller_) controller_ = makeController_(*this);
  return *controller_;
}

void AppUpdater::offer(const platform::UpdateOffer& update) {
  availableVersion.set(update.version.toStdString());
  dismissed.set(false);
}

void AppUpdater::withdraw() {
  availableVersion.set(std::nullopt);
  readyToInstall.set(false);
}

}  // namespace velmora
