#include "Velmora/Studio/Shell/WindowGroup.h"
#include "tests/Velmora/Studio/Shell/ShellBench.h"

namespace velmora {
namespace {

using testing::spinUntil;
using WindowGroupTest = testing::ShellBench;

TEST_F(WindowGroupTest, TheLastWindowStaysUntilTheWorkIsSafe) {
  model().renameProject("Last words");
  EXPECT_FALSE(window_->close());
  EXPECT_TRUE(window_->isVisible());
  press(Qt::Key_Q, Qt::ControlModifier);
  ASSERT_TRUE(spinUntil([&] { return isTerminated_; }));
  EXPECT_TRUE(window_->isVisible());
  EXPECT_FALSE(model().isEngineRunning());
  start();
  ASSERT_TRUE(spinUntil([&] { return model().isEngineRunning(); }));
  EXPECT_EQ(model().song().name, "Last words");
}

TEST_F(WindowGroupTest, StaysOpenWithTheReasonWhenTheWorkIsNotSafe) {
  model().createProject();
  EXPECT_FALSE(window_->close());
  EXPECT_FALSE(windows_->mayEndSession());
  ASSERT_TRUE(awaitShown("errorBanner"));
  EXPECT_EQ(bench_.error(), "Wait for the current audio or project operation to finish, then quit again.");
  EXPECT_FALSE(isTerminated_);
  ASSERT_TRUE(spinUntil([&] { return !model().isProjectBusy(); }));
  windows_->quit();
  EXPECT_TRUE(spinUntil([&] { return isTerminated_; }));
}

TEST_F(WindowGroupTest, ASignalWaitsForTheWorkUnderWay) {
  model().createProject();
  windows_->quitSoon();
  EXPECT_TRUE(spinUntil([&] { return isTerminated_; }));
  EXPECT_EQ(bench_.error(), "");
}

TEST_F(WindowGroupTest, AFurtherWindowJustCloses) {
  press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
  MainWindow* further = windows_->front();
  ASSERT_NE(further, window_);
  ASSERT_TRUE(QTest::qWaitForWindowActive(further));
  model().showsProjects.set(true);
  ASSERT_TRUE(spinUntil([&] { return further->findChild<QWidget*>("library"); }));
  EXPECT_FALSE(find("library"));
  model().showsProjects.set(false);
  EXPECT_TRUE(further->close());
  EXPECT_EQ(windows_->front(), window_);
  EXPECT_FALSE(isTerminated_);
}

TEST_F(WindowGroupTest, TheSessionWaitsForTheAnswer) {
  model().renameProject("Logged out");
  EXPECT_TRUE(windows_->mayEndSession());
  EXPECT_TRUE(isTerminated_);
  EXPECT_EQ(model().saveStatus(), "Saved");
}

}  // namespace
}  // namespace velmora
