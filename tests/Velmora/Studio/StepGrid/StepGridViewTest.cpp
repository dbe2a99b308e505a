#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QWheelEvent>

#include "Velmora/Studio/StepGrid/StepGridView.h"
#include "tests/Velmora/Studio/StepGrid/StepGridBench.h"
#include "tests/support/GoldenPicture.h"

namespace velmora {
namespace {

using testing::spinUntil;
using testing::uuid;

using StepGridViewTest = testing::StepGridBench;

TEST_F(StepGridViewTest, TheMouseTogglesAndDrags) {
  QTest::mouseClick(&canvas(), Qt::LeftButton, {}, at(1, 4));
  EXPECT_EQ(velocity(DrumSound::snare, 4), 100);
  QTest::mouseDClick(&canvas(), Qt::LeftButton, {}, at(1, 4));  // a quick second press is a press
  QTest::mouseRelease(&canvas(), Qt::LeftButton, {}, at(1, 4));
  EXPECT_EQ(velocity(DrumSound::snare, 4), 0);
  const Song before = model_.song();
  hold(3, 2);
  QTest::mouseMove(&canvas(), at(3, 2) - QPoint(0, 13));
  EXPECT_EQ(model_.song(), before);
  QTest::mouseRelease(&canvas(), Qt::LeftButton, {}, at(3, 2) - QPoint(0, 13));
  EXPECT_EQ(velocity(DrumSound::closedHat, 2), 85);
}

TEST_F(StepGridViewTest, ACancelledDragChangesNothing) {
  const std::pair<const char*, std::function<void()>> losses[] = {
      {"Escape", [&] { QTest::keyClick(&canvas(), Qt::Key_Escape); }},
      {"focus", [&] { canvas().clearFocus(); }},
      {"second button", [&] { QTest::mousePress(&canvas(), Qt::RightButton, {}, at(3, 2)); }},
      {"hidden", [&] { view_.hide(); }},
      {"edited", [&] { model_.setDrumStepVelocity(uuid(11), DrumSound::closedHat, 2, 73); }},
  };
  for (const auto& [name, lose] : losses) {
    model_.setDrumStepVelocity(uuid(11), DrumSound::closedHat, 2, 72);
    hold(3, 2);
    QTest::mouseMove(&canvas(), at(3, 2) - QPoint(0, 20));
    lose();
    EXPECT_TRUE(spinUntil([&] { return !canvas().draggedVelocity(); })) << name;
    for (const auto button : {Qt::LeftButton, Qt::RightButton}) QTest::mouseRelease(&canvas(), button);
    EXPECT_NEAR(velocity(DrumSound::closedHat, 2), 72.5, 0.5) << name;
    view_.show();
  }
}

TEST_F(StepGridViewTest, AFingerTapsHoldsAndScrolls) {
  const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
  const auto drag = [&](QPoint from, QPoint to, const std::function<bool()>& isHeld) {
    QTest::touchEvent(&canvas(), screen.get()).press(1, from);
    EXPECT_TRUE(spinUntil(isHeld));
    QTest::touchEvent(&canvas(), screen.get()).move(1, to);
    QTest::touchEvent(&canvas(), screen.get()).release(1, to);
  };
  const auto atOnce = [] { return true; };
  view_.resize(700, 300);
  drag(at(1, 4), at(1, 4) + QPoint(3, 3), atOnce);
  EXPECT_EQ(velocity(DrumSound::snare, 4), 100);
  const Song before = model_.song();
  drag(at(1, 4), at(1, 4) - QPoint(40, 30), atOnce);
  EXPECT_EQ(canvas().pos(), QPoint(-40, -30));
  EXPECT_EQ(model_.song(), before);
  drag(at(3, 2), at(3, 2) - QPoint(0, 28), [&] { return canvas().draggedVelocity().has_value(); });
  EXPECT_EQ(velocity(DrumSound::closedHat, 2), 100);
}

TEST_F(StepGridViewTest, TheKeysReachEveryCell) {
  canvas().clearFocus();
  canvas().setFocus();
  QTest::keyClick(&canvas(), Qt::Key_Return);  // the focus didn't come by Tab: Return is the transport's
  canvas().clearFocus();
  QTest::keyClick(&view_, Qt::Key_Tab);
  const std::tuple<QList<Qt::Key>, int, int, DrumSound> rows[] = {
      {{Qt::Key_Down, Qt::Key_Right, Qt::Key_Return}, 1, 100, DrumSound::snare},
      {{Qt::Key_Plus, Qt::Key_Equal, Qt::Key_Minus}, 1, 108, DrumSound::snare},
      {{Qt::Key_Delete, Qt::Key_Delete, Qt::Key_Minus}, 1, 0, DrumSound::snare},
      {{Qt::Key_Up, Qt::Key_Up, Qt::Key_End, Qt::Key_Right, Qt::Key_Space}, 15, 100, DrumSound::kick},
      {{Qt::Key_Home, Qt::Key_Left, Qt::Key_Enter}, 0, 0, DrumSound::kick},
  };
  for (const auto& [keys, step, wanted, sound] : rows) {
    for (const Qt::Key key : keys) QTest::keyClick(&canvas(), key);
    EXPECT_EQ(velocity(sound, step), wanted) << keys.size();
  }
  QTest::mouseClick(&canvas(), Qt::LeftButton, {}, at(4, 4));
  QTest::keyClick(&canvas(), Qt::Key_Return);  // the mouse leads
  EXPECT_EQ(velocity(DrumSound::openHat, 4), 100);
}

TEST_F(StepGridViewTest, TheMenuActsOnTheCell) {
  const auto choose = [&](QPoint point, int row) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, point, canvas().mapToGlobal(point));
    QApplication::sendEvent(&canvas(), &event);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    menu->actions().at(row)->trigger();
    menu->close();
  };
  choose(at(2, 5), 0);  // "Enable Step"
  choose(at(0, 0), 1);  // "Soft · 40"
  EXPECT_EQ(velocity(DrumSound::clap, 5), 100);
  EXPECT_EQ(velocity(DrumSound::kick, 0), 40);
}

TEST_F(StepGridViewTest, TheWheelScrollsTheCellsBesideTheirNames) {
  view_.resize(600, 240);
  for (QWidget* const under : {view_.viewport(), static_cast<QWidget*>(&view_)}) {
    for (const auto modifier : {Qt::NoModifier, Qt::ShiftModifier}) {
      const QPoint before = canvas().pos();
      QWheelEvent event({5, 5}, {5, 5}, {}, {0, -120}, {}, modifier, Qt::NoScrollPhase, false);
      QApplication::sendEvent(under, &event);
      EXPECT_EQ(canvas().y() < before.y(), modifier == Qt::NoModifier);
      EXPECT_EQ(canvas().x() < before.x(), modifier == Qt::ShiftModifier);
    }
  }
  canvas().setFocus();
  QTest::keyClick(&canvas(), Qt::Key_End);  // the cursor comes into view
  EXPECT_TRUE(canvas().visibleRegion().contains(canvas().grid().cell(canvas().cursor()).toAlignedRect()));
}

TEST_F(StepGridViewTest, APageIsABar) {
  model_.editMelodicPattern(uuid(12), [](Pattern& pattern) { pattern.lengthBeats = 4.25; });
  StepGridView view(model_, uuid(12));
  view.resize(960, 520);
  view.show();
  auto* const bar = view.findChild<QLabel*>("steps.bar");
  QTest::mouseClick(view.findChild<QAbstractButton*>("steps.nextBar"), Qt::LeftButton);
  EXPECT_EQ(view.canvas().grid().cellWidth, 960 - 12 - 100 - 6 - 12);
  EXPECT_EQ(view.canvas().step({0, 0}).step, 16);
  view.canvas().onToggle(DrumSound::kick, 16);  // not a drum track
  EXPECT_TRUE(model_.song().pattern(uuid(12))->notes.empty());

  const std::pair<Qt::Key, int> turns[] = {
      {Qt::Key_Left, 0}, {Qt::Key_Right, 1}, {Qt::Key_PageUp, 0}, {Qt::Key_PageUp, 0}, {Qt::Key_PageDown, 1}};
  for (const auto& [key, page] : turns) {
    QTest::keyClick(&view.canvas(), key);
    EXPECT_EQ(bar->text(), QString("Bar %1 of 2").arg(page + 1));
  }
  model_.editMelodicPattern(uuid(12), [](Pattern& pattern) { pattern.lengthBeats = 4; });
  EXPECT_TRUE(spinUntil([&] { return view.page() == 0; }));
  EXPECT_FALSE(bar->isVisible());
  model_.deleteTrack(uuid(2));
  EXPECT_TRUE(spinUntil([&] { return view.canvas().grid().stepCount == 0; }));
  QTest::keyClick(&view.canvas(), Qt::Key_Right);
}

/// Steps soft and loud, the cursor and the playhead.
TEST_F(StepGridViewTest, LooksAsItDid) {
  for (int step = 0; step < 16; ++step) {
    model_.toggleDrumStep(uuid(11), DrumSound::perc, step);
    model_.setDrumStepVelocity(uuid(11), DrumSound::perc, step, 1 + 8 * step);
  }
  model_.seek(5.25);
  canvas().takeKeyboardFocus({2, 9});
  ASSERT_TRUE(spinUntil([&] { return view_.playhead().x() > 0; }));
  EXPECT_TRUE(testing::isGolden(testing::pictureOf(canvas(), canvas().rect()), "steps"));
}

}  // namespace
}  // namespace velmora
