#include <gtest/gtest.h>

#include "Velmora/Online/Updates/AppUpdater.h"
#include "tests/Velmora/Online/Updates/UpdaterBench.h"

namespace velmora {
namespace {

using AppUpdaterTest = testing::UpdaterBench;

TEST_F(AppUpdaterTest, StartsOnce) {
  EXPECT_FALSE(controller_) << "not before it is needed";
  AppUpdater& updater = *updater_;
  EXPECT_FALSE(updater.canRestart());
  updater.start(model());
  updater.start(model());
  EXPECT_EQ(controller_->starts, 1);
  EXPECT_EQ(updater.errorMessage(), std::nullopt);
  EXPECT_TRUE(updater.canRestart());
  auto other = std::make_unique<testing::ModelBench>();
  updater.start(*other->model);
  EXPECT_EQ(updater.model(), other->model.get());
  other.reset();
  EXPECT_FALSE(updater.canRestart()) << "without a model nobody knows";
  EXPECT_EQ(controller_->starts, 1);

  controller_ = nullptr;
  failsToStart_ = true;
  makeUpdater();
  updater_->start(model());
  EXPECT_EQ(updater_->errorMessage(),
            "Update checks could not start. You can keep working and try again later.");
  EXPECT_EQ(updater_->availableVersion(), std::nullopt);
}

TEST_F(AppUpdaterTest, KeepsTheOfferAsTheServiceTells) {
  AppUpdater& updater = *updater_;
  updater.start(model());
  EXPECT_TRUE(updater.supportsGentleScheduledUpdateReminders());
  EXPECT_FALSE(updater.standardUserDriverShouldHandleShowingScheduledUpdate(offer("0.2"), true));
  const auto state = [&] {
    return updater.availableVersion().value_or("none") + (updater.readyToInstall() ? " ready" : "") +
           (updater.dismissed() ? " dismissed" : "");
  };
  const auto block = [this] { ++installations_; };
  struct Row {
    std::function<void()> call;
    const char* state;
  };
  const Row rows[] = {
      {[&] { updater.standardUserDriverWillHandleShowingUpdate(true, offer("0.2"), {}); }, "none"},
      {[&] { updater.standardUserDriverWillHandleShowingUpdate(false, offer("0.2"), {}); }, "0.2"},
      {[&] { updater.dismiss(); }, "0.2 dismissed"},
      {[&] { updater.standardUserDriverWillHandleShowingUpdate(true, offer("0.3"), {}); }, "0.2 dismissed"},
      {[&] { updater.standardUserDriverWillHandleShowingUpdate(false, offer("0.2"), {}); }, "0.2"},
      {[&] { updater.dismiss(); }, "0.2 dismissed"},
      {[&] { updater.didFindValidUpdate(offer("0.3")); }, "0.3"},
      {[&] { updater.standardUserDriverWillFinishUpdateSession(); }, "none"},
      {[&] { updater.didFindValidUpdate(offer("0.3")); }, "0.3"},
      {[&] { updater.didAbortWithError(std::runtime_error("")); }, "none"},
      {[&] { updater.dismiss(); }, "none dismissed"},
      {[&] { EXPECT_TRUE(updater.willInstallUpdateOnQuit(offer("0.4"), block)); }, "0.4 ready"},
      {[&] { updater.standardUserDriverWillFinishUpdateSession(); }, "0.4 ready"},
      {[&] { updater.installUpdate(); }, "0.4 ready"},
      {[&] { updater.didAbortWithError(std::runtime_error("")); }, "none"}};
  for (const auto& [call, expected] : rows) {
    call();
    EXPECT_EQ(state(), expected) << "row " << &expected - &rows[0].state;
  }
  EXPECT_EQ(installations_, 1);
  EXPECT_EQ(controller_->checks, 0);
  updater.installUpdate();
  EXPECT_EQ(installations_, 1) << "no block from before";
  EXPECT_EQ(controller_->checks, 1);
}

TEST_F(AppUpdaterTest, NothingUnsavedIsRestarted) {
  AppUpdater& updater = *updater_;
  updater.start(model());
  bool block = false;
  updater.willInstallUpdateOnQuit(offer("0.2"), [&] { block = true; });
  EXPECT_TRUE(updater.canRestart());
  const auto expectRefusal = [&](const char* why) {
    EXPECT_FALSE(updater.canRestart()) << why;
    updater.installUpdate();
    EXPECT_FALSE(block) << why;
  };
  auto creating = model().createProject();
  expectRefusal("a project operation");
  ASSERT_TRUE(testing::spinUntil([&] { return creating.isReady(); }));
  auto exporting = model().exportWAV();
  ASSERT_TRUE(model().exportTask());
  expectRefusal("an export");
  model().exportTask()->cancel();
  ASSERT_TRUE(testing::spinUntil([&] { return !model().exportTask() && !model().isAudioBusy(); }));
  record();
  expectRefusal("a recording");
  loseTake();
  expectRefusal("a take that waits");
  model().discardPendingTake();
  ASSERT_TRUE(testing::spinUntil([&] { return updater.canRestart(); }));
  updater.checkForUpdates();
  EXPECT_EQ(controller_->checks, 1);
  updater.installUpdate();
  EXPECT_TRUE(block);
}

}  // namespace
}  // namespace velmora
