#include <QAction>
#include <QMenu>
#include <gtest/gtest.h>

#include "Velmora/Studio/Arrangement/ArrangementView.h"
#include "Velmora/Studio/Arrangement/LoopEditorView.h"
#include "tests/Velmora/Studio/Arrangement/ArrangementBench.h"
#include "tests/support/GoldenPicture.h"

namespace velmora::testing {
namespace {

/// Clips long and short with and without the selection, in and beside the loop; neither names nor numbers.
TEST(ArrangementViewTest, LooksAsItDid) {
  Song song = ArrangementBench::song();
  for (Pattern& pattern : song.patterns.write()) pattern.name.clear();
  ArrangementBench bench({960, 340}, std::move(song));
  bench.model->changeClip(bench.clipID(0), {.lengthBeats = 1});
  bench.model->changeClip(bench.clipID(1), {.lengthBeats = 6});
  bench.model->selectClip(bench.clipID(1));
  bench.model->setLoop(2, 9);
  bench.model->seek(5.5);
  bench.settle();
  const QRect ruler = bench.part("arrangement.ruler").geometry();
  std::vector<QRect> numbers;
  numbers.reserve(4);
  for (int bar = 0; bar < 4; ++bar) numbers.emplace_back(ruler.x() + 192 * bar + 3, ruler.y(), 24, 15);
  EXPECT_TRUE(isGolden(pictureOf(*bench.view, ruler | bench.canvas->geometry(), numbers), "arrangement"));
}

TEST(ArrangementCanvasTest, IsNotDrawnAgainForEditsElsewhere) {
  ArrangementBench bench;
  EventCounter paints(*bench.canvas);
  bench.model->setTrackVolume(bench.track(1).id, 0.3F);
  bench.model->toggleMute(bench.track(0).id);
  bench.model->setMasterVolume(0.5F);
  bench.model->addMelodicNote(*bench.track(1).selectedPatternID, 60, 0, 1, 0.25);
  bench.settle();
  EXPECT_EQ(paints.count, 0);
  bench.model->selectTrack(bench.track(2).id);
  bench.settle();
  EXPECT_EQ(paints.count, 1);
}

TEST(ArrangementCanvasTest, ClipsCanBeReadSelectedAndDeleted) {
  ArrangementBench bench;
  QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(bench.canvas);
  ASSERT_EQ(list->childCount(), 3);
  QAccessibleInterface* const clip = list->child(1);
  EXPECT_EQ(clip->text(QAccessible::Name), "Clip on Pad, beat 5");
  EXPECT_EQ(list->indexOfChild(clip), 1);
  EXPECT_EQ(list->childAt(clip->rect().center().x(), clip->rect().center().y()), clip);
  clip->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(bench.model->selectedClipID(), bench.clipID(1));
  clip->actionInterface()->doAction("Delete");
  bench.settle();
  EXPECT_EQ(list->childCount(), 2);
  EXPECT_EQ(clip->text(QAccessible::Name), "Clip on Bass, beat 9");
  EXPECT_FALSE(list->child(2));
}

TEST(RulerCanvasTest, MovesThePlayhead) {
  ArrangementBench bench;
  QWidget& ruler = bench.part("arrangement.ruler");
  const auto beat = [&] { return bench.model->transport().playhead(); };
  QTest::mouseClick(&ruler, Qt::LeftButton, {}, {480, 10});
  EXPECT_EQ(beat(), 10);
  QTest::keyClick(&ruler, Qt::Key_Right);
  QTest::keyClick(&ruler, Qt::Key_PageUp);
  EXPECT_EQ(beat(), 15);
  auto* const spoken = QAccessible::queryAccessibleInterface(&ruler);
  EXPECT_EQ(spoken->text(QAccessible::Name), "Timeline position");
  spoken->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
  EXPECT_EQ(beat(), 14);
  QTest::keyClick(&ruler, Qt::Key_Home);
  EXPECT_EQ(beat(), 0);
}

TEST(PlayheadMarkerTest, TicksOnlyWhileItPlaysAndDrawsOnlyItsOwnPixels) {
  ArrangementBench bench;
  const auto isMarked = [&](int beat) {
    const QColor seen = bench.canvas->grab(QRect(beat * 48, 5, 1, 1)).toImage().pixelColor(0, 0);
    return seen.red() > 180 && seen.green() > 100;
  };
  bench.model->seek(3);
  bench.settle();
  EXPECT_TRUE(isMarked(3));
  bench.model->transport().publish(5);
  bench.settle();
  EXPECT_TRUE(isMarked(3));
  bench.model->play();
  EXPECT_TRUE(spinUntil([&] { return isMarked(5); }));
  EXPECT_FALSE(isMarked(3));
  bench.settle();
  EventCounter paints(*bench.canvas);
  bench.model->transport().publish(6);
  EXPECT_TRUE(spinUntil([&] { return paints.count > 0; }));
  EXPECT_LE(paints.pixels, 2 * 3 * bench.canvas->height());
  bench.model->stop();
}

TEST(PlayheadMarkerTest, TurnsThePageUnlessTheUserIsElsewhere) {
  ArrangementBench bench({600, 300});  // about 9 beats
  const auto playTo = [&](double beat) {
    bench.model->transport().publish(beat);
    bench.settle();
    return bench.view->viewport().scrollOffset.x() / 48;
  };
  bench.model->seek(4);
  bench.model->play();
  EXPECT_EQ(playTo(6), 0);
  EXPECT_EQ(playTo(10), 9.5);
  EXPECT_EQ(playTo(0), 0) << "the loop begins again";
  bench.grab(1, 0);
  bench.pull(2, 0);
  EXPECT_EQ(playTo(12), 0) << "a drag is under way";
  bench.drop();
  EXPECT_EQ(playTo(12), 11.5);
  bench.wheel({0, 12000}, Qt::ShiftModifier);
  EXPECT_EQ(playTo(13), 0) << "the user has scrolled away";
  EXPECT_EQ(playTo(3), 0);
  EXPECT_EQ(playTo(11), 10.5);
  bench.model->stop();
}

TEST(TrackHeaderTest, SelectsMixesAndDeletesItsTrack) {
  ArrangementBench bench;
  const auto rows = bench.view->findChildren<QWidget*>("arrangement.track");
  ASSERT_EQ(rows.size(), 4);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(rows[1])->role(), QAccessible::Button);
  EXPECT_EQ(rows[1]->accessibleName(), "Pad, Pad track");
  EXPECT_EQ(rows[3]->accessibleName(), "Voice, Audio track");
  QTest::mouseClick(rows[1], Qt::LeftButton, {}, {60, 30});
  EXPECT_EQ(bench.model->selectedTrackID(), bench.track(1).id);
  auto* const mute = rows[1]->findChild<QAbstractButton*>("arrangement.track.mute");
  EXPECT_EQ(mute->accessibleName(), "Mute Pad");
  mute->click();
  bench.settle();
  EXPECT_TRUE(bench.track(1).isMuted);
  EXPECT_EQ(mute->accessibleName(), "Unmute Pad");
  auto* const pan =
      QAccessible::queryAccessibleInterface(rows[1]->findChild<QWidget*>("arrangement.track.pan"));
  EXPECT_EQ(pan->text(QAccessible::Name), "Pad pan");
  EXPECT_EQ(pan->text(QAccessible::Value), "centre");
  pan->valueInterface()->setCurrentValue(-0.5);
  EXPECT_EQ(bench.track(1).pan, -0.5F);
  EXPECT_EQ(pan->text(QAccessible::Value), "50 percent left");
  rows[1]->actions().front()->trigger();
  bench.settle();
  EXPECT_EQ(bench.view->findChildren<QWidget*>("arrangement.track").size(), 3);
}

TEST(TrackHeaderTest, TheMenuAddsTracksOfEveryKind) {
  ArrangementBench bench({600, 300});
  QStringList texts;
  for (QAction* item : bench.part("arrangement.addTrack").findChild<QMenu*>()->actions()) {
    texts << item->text();
    item->trigger();
  }
  EXPECT_EQ(texts.join(','), "Drums,MiniSynth,Bass,Pad,Lead,Keys,Audio");
  ASSERT_EQ(bench.model->song().tracks.size(), 11U);
  EXPECT_EQ(bench.track(6).kind, TrackKind::synth(SynthPreset::bass));
  bench.settle();
  EXPECT_EQ(bench.part("arrangement.tracks").width(), 136);
  bench.wheel({0, -12000});
  QWidget& menu = bench.part("arrangement.addTrack");
  EXPECT_LE(menu.mapTo(&*bench.view, menu.rect().bottomLeft()).y(), bench.view->height());
}

QString spokenValue(QWidget& widget) {
  return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Value);
}

TEST(SelectedClipPanelTest, ChangesTheClip) {
  ArrangementBench bench;
  QWidget& panel = bench.part("arrangement.selectedClip");
  EXPECT_FALSE(panel.isVisible());
  bench.model->selectClip(bench.clipID(1));
  bench.settle();
  EXPECT_TRUE(panel.isVisible());
  QWidget& start = bench.part("arrangement.clip.start");
  EXPECT_EQ(spokenValue(start), "Start: 4");
  start.findChildren<QAbstractButton*>().back()->click();
  bench.part("arrangement.clip.beats").findChildren<QAbstractButton*>().front()->click();
  EXPECT_EQ(bench.clip(1).startBeat, 5);
  EXPECT_EQ(bench.clip(1).lengthBeats, 3);
  bench.press("arrangement.clip.move");
  auto* const menu = bench.part("arrangement.clip.move").findChild<QMenu*>();
  ASSERT_EQ(menu->actions().size(), 1);
  menu->actions().front()->trigger();
  menu->close();
  EXPECT_EQ(bench.clip(1).trackID, bench.track(2).id);
  const UUID own = bench.clip(2).source.id;
  bench.model->newPattern(bench.track(2).id);
  bench.model->selectClip(bench.clipID(2));
  bench.settle();
  bench.press("arrangement.clip.edit");
  EXPECT_EQ(bench.model->selectedPattern()->id, own);
  EXPECT_EQ(bench.model->workspace(), Workspace::pattern);
  EXPECT_EQ(bench.model->selectedTrackID(), bench.track(2).id);
}

TEST(LoopEditorViewTest, SetsAndClearsTheLoop) {
  ArrangementBench bench;
  LoopEditorView editor(*bench.model);
  const auto texts = [&] {
    bench.settle();
    return spokenValue(*editor.findChild<QWidget*>("arrangement.loop.start")) + ", " +
           spokenValue(*editor.findChild<QWidget*>("arrangement.loop.end"));
  };
  EXPECT_EQ(texts(), "Start beat: 0, End beat: 16 (exclusive)");
  editor.findChild<QWidget*>("arrangement.loop.start")->findChildren<QAbstractButton*>().back()->click();
  EXPECT_EQ(bench.model->song().loop, (LoopRange{1, 16}));
  editor.findChild<QWidget*>("arrangement.loop.end")->findChildren<QAbstractButton*>().front()->click();
  EXPECT_EQ(texts(), "Start beat: 1, End beat: 15 (exclusive)");
  editor.findChild<QAbstractButton*>("arrangement.loop.whole")->click();
  EXPECT_EQ(bench.model->song().loop, std::nullopt);
}

TEST(ArrangementViewTest, AnEmptySongOffersATrack) {
  ArrangementBench bench;
  while (!bench.model->song().tracks.empty()) bench.model->deleteTrack(bench.track(0).id);
  bench.settle();
  EXPECT_FALSE(bench.canvas->isVisible());
  ASSERT_TRUE(bench.part("arrangement.empty").isVisible());
  bench.part("arrangement.empty").findChild<QMenu*>()->actions().front()->trigger();
  bench.settle();
  EXPECT_TRUE(bench.canvas->isVisible());
}

TEST(ArrangementViewTest, ComesToRestInEveryWidth) {
  for (int width : {540, 700, 900, 1280}) {
    ArrangementBench bench({width, 300});
    bench.model->selectClip(bench.clipID(1));
    bench.settle();
    EventCounter layouts(*bench.view, QEvent::LayoutRequest);
    bench.settle();
    EXPECT_EQ(layouts.count, 0) << width;
    const QRect panel = bench.part("arrangement.selectedClip").geometry();
    EXPECT_TRUE(bench.view->rect().contains(panel)) << width;
    EXPECT_FALSE(panel.intersects(bench.canvas->geometry())) << width;
  }
}

}  // namespace
}  // namespace velmora::testing
