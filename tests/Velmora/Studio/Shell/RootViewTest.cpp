#include <QAccessible>
#include <QLineEdit>

#include "Velmora/Studio/Shell/AboutView.h"
#include "Velmora/Studio/Shell/BundledTextView.h"
#include "Velmora/Studio/Shell/RootView.h"
#include "tests/Velmora/Studio/Shell/ShellBench.h"

namespace velmora {
namespace {

using testing::spinUntil;

class RootViewTest : public testing::ShellBench {
 protected:
  /// The names of what is shown of the ways to change the workspace, and of the views.
  std::string shown() {
    std::string text;
    for (const char* name : {"header.workspace", "header.mixer", "workspace.picker", "tabs", "arrangement",
                             "patternEditor", "mixer"}) {
      if (isShown(name)) text += std::string(text.empty() ? "" : " ") + name;
    }
    return text;
  }
};

TEST_F(RootViewTest, ChangesTheWorkspaceByWhatFitsTheWindow) {
  const std::pair<QSize, const char*> rows[] = {
      {{540, 480}, "header.mixer tabs arrangement"},
      {{699, 800}, "header.mixer tabs arrangement"},
      {{700, 480}, "header.workspace arrangement"},
      {{1000, 499}, "header.workspace arrangement"},
      {{800, 600}, "header.mixer workspace.picker arrangement"},
      {{1000, 600}, "header.mixer arrangement patternEditor"},
      {{900, 500}, "header.mixer arrangement patternEditor"},
  };
  for (const auto& [size, expected] : rows) {
    ASSERT_TRUE(resizeContent(size));
    EXPECT_EQ(shown(), expected) << size.width() << " by " << size.height();
  }
  model().editorVisible.set(false);
  EXPECT_TRUE(spinUntil([&] { return shown() == "header.mixer workspace.picker arrangement"; })) << shown();
  click("header.mixer");
  EXPECT_EQ(model().workspace(), Workspace::mixer);
  EXPECT_TRUE(spinUntil([&] { return shown() == "header.mixer mixer"; })) << shown();
  window_->resize(1, 1);
  EXPECT_TRUE(spinUntil([&] { return find("root")->size() == QSize(540, 480); }));
  click("tabs.pattern");
  EXPECT_TRUE(spinUntil([&] { return shown() == "header.mixer tabs patternEditor"; })) << shown();
}

TEST_F(RootViewTest, StartsOnceTheFirstWindowIsOnTheScreen) {
  EXPECT_FALSE(wasLoadedWhenShown_);
  EXPECT_TRUE(model().hasLoadedProject());
  EXPECT_TRUE(bench_.awaitStatus("Saved"));
}

TEST_F(RootViewTest, SavesAndReleasesTheKeysWhenItsWindowIsLeft) {
  resizeContent({900, 600});
  const auto& track = model().song().tracks.back();
  const auto playsSound = [&] {
    for (int i = 0; i < 40; ++i) bench_.device->pull(4096);
    return bench_.device->pull(4096).peak() > 1e-4F;
  };
  model().engine().setAuditionKey(60, true, track.id);
  click("header.rename");  // a sheet of its own leaves the window active
  EXPECT_TRUE(playsSound());
  ASSERT_TRUE(bench_.awaitStatus("Saved"));
  std::filesystem::remove(bench_.document(model().song().id));
  ASSERT_TRUE(QTest::qWaitForWindowActive(&windows_->open()));
  EXPECT_TRUE(spinUntil([&] { return std::filesystem::exists(bench_.document(model().song().id)); }));
  EXPECT_FALSE(playsSound());
}

TEST_F(RootViewTest, ShowsAnErrorUntilItIsDismissed) {
  model().reportError("The disk is full.");
  QWidget* banner = find("errorBanner");
  ASSERT_TRUE(resizeContent({540, 480}));
  EXPECT_TRUE(spinUntil([&] { return banner->isVisible() && banner->pos() == QPoint(8, 8); }));
  EXPECT_EQ(banner->width(), 524);
  ASSERT_TRUE(resizeContent({1000, 600}));
  EXPECT_EQ(banner->pos(), QPoint(220, 8));
  EXPECT_EQ(banner->width(), 560);
  click("errorBanner.dismiss");
  EXPECT_EQ(model().lastError(), std::nullopt);
  EXPECT_TRUE(awaitShown("errorBanner", false));
}

TEST_F(RootViewTest, MovesTheErrorInUnlessMotionIsUnwanted) {
  for (const bool isUnwanted : {false, true}) {
    Theme::setReducesMotion(isUnwanted);
    QWidget parent;
    ErrorBanner banner(parent);
    banner.setMessage("The disk is full.");
    EXPECT_EQ(banner.isVisibleTo(&parent), isUnwanted);
    EXPECT_TRUE(spinUntil([&] { return banner.isVisibleTo(&parent) && banner.y() == 8; }));
  }
  Theme::setReducesMotion(false);
}

TEST_F(RootViewTest, KeepsTheEditorsHeight) {
  ASSERT_TRUE(resizeContent({1000, 700}));
  QWidget* handle = find("workspace.resizeHandle");
  const int before = find("patternEditor")->height();
  const auto drag = [&](int distance) {
    const QPoint from = handle->mapToGlobal(handle->rect().center());
    const QPoint to = from + QPoint(0, distance);
    QTest::mousePress(handle, Qt::LeftButton, {}, handle->mapFromGlobal(from));
    QTest::mouseMove(handle, handle->mapFromGlobal(to));
    QTest::mouseRelease(handle, Qt::LeftButton, {}, handle->mapFromGlobal(to));
    QCoreApplication::processEvents();
  };
  drag(-9);
  EXPECT_EQ(find("patternEditor")->height(), before);
  drag(-40);
  EXPECT_NEAR(find("patternEditor")->height(), before + 40, 1);
  drag(-2000);
  EXPECT_EQ(find("arrangement")->height(), 140);

  model().editorVisible.set(true);
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(handle);
  spoken->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
  const double lowered = spoken->valueInterface()->currentValue().toDouble();
  EXPECT_LE(lowered, 0.8);
  handle->setFocus(Qt::TabFocusReason);
  press(Qt::Key_Down);
  EXPECT_DOUBLE_EQ(QSettings("Orrin", "Velmora").value("editorFraction").toDouble(), lowered - 0.05);
  EXPECT_DOUBLE_EQ(EditorFraction()(), lowered - 0.05);
}

TEST_F(RootViewTest, RenamesTheProjectWhileThePlainKeysRest) {
  click("header.rename");
  EXPECT_TRUE(model().isEditingText());
  EXPECT_EQ(find<QLineEdit>("rename.name")->selectedText(), "Demo");
  ASSERT_TRUE(activate("rename"));
  for (const Qt::Key key : {Qt::Key_A, Qt::Key_Space, Qt::Key_B, Qt::Key_Return}) press(key);
  EXPECT_EQ(model().song().name, "a b");
  EXPECT_FALSE(model().isEditingText());
  EXPECT_FALSE(model().isPlaying());
}

TEST_F(RootViewTest, OpensCreatesAndDeletesProjects) {
  press(Qt::Key_N, Qt::ControlModifier);
  ASSERT_TRUE(spinUntil([&] { return model().projects().size() == 2 && !model().isProjectBusy(); }));
  EXPECT_EQ(model().song().name, "Untitled Beat");
  click("header.projects");
  auto* list = find<QListView>("library.list");
  ASSERT_TRUE(spinUntil([&] { return list->model()->rowCount() == 2; }));
  ASSERT_TRUE(activate("library"));
  list->setCurrentIndex(list->model()->index(1, 0));
  EXPECT_TRUE(list->currentIndex().data(Qt::AccessibleTextRole).toString().startsWith("Demo, 2 tracks · "));

  press(Qt::Key_Delete);
  click("confirmation.cancel");
  ASSERT_TRUE(activate("library"));
  press(Qt::Key_Return);
  ASSERT_TRUE(spinUntil([&] { return model().song().name == "Demo" && !model().showsProjects(); }));
  EXPECT_TRUE(awaitShown("library", false));

  model().showsProjects.set(true);
  ASSERT_TRUE(activate("library"));
  list = find<QListView>("library.list");
  const auto others = list->model()->match(list->model()->index(0, 0), Qt::DisplayRole, "Untitled Beat");
  ASSERT_EQ(others.size(), 1);
  list->setCurrentIndex(others[0]);
  press(Qt::Key_Delete);
  click("confirmation.accept");
  EXPECT_TRUE(spinUntil([&] { return model().projects().size() == 1; }));
  click("library.done");
  EXPECT_FALSE(model().showsProjects());
}

TEST_F(RootViewTest, TellsTheVersionAndOpensTheTexts) {
  EXPECT_EQ(AboutView::versionLine(), "Version 1.0.0");
  QCoreApplication::setApplicationVersion("2.3");
  EXPECT_EQ(AboutView::versionLine(), "Version 2.3");
  QCoreApplication::setApplicationVersion({});
  EXPECT_TRUE(BundledTextView::load("Privacy").contains("microphone"));
  EXPECT_TRUE(BundledTextView::load("ThirdPartyNotices").contains("SIL Open Font License"));
  EXPECT_EQ(BundledTextView::load("Missing"), "This document could not be opened.");
}

}  // namespace
}  // namespace velmora
