#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "Velmora/Studio/Arrangement/ArrangementGestures.h"
#include "tests/Velmora/Studio/Arrangement/ArrangementBench.h"

namespace velmora::testing {
namespace {

TEST(ArrangementGesturesTest, ATapSelectsPlacesOrClears) {
  ArrangementBench bench;
  bench.click(5, 1);
  EXPECT_EQ(bench.model->selectedClipID(), bench.clipID(1));
  bench.click(13.9, 2);
  ASSERT_EQ(bench.model->song().clips.size(), 4U);
  EXPECT_EQ(bench.clip(3).startBeat, 13);
  EXPECT_EQ(bench.clip(3).trackID, bench.track(2).id);
  bench.press("arrangement.editClips");
  bench.click(1, 2);
  EXPECT_EQ(bench.model->song().clips.size(), 4U);
  EXPECT_EQ(bench.model->selectedClipID(), std::nullopt);
}

TEST(ArrangementGesturesTest, ADragMovesOrResizesOnWholeBeats) {
  struct Row {
    const char* what;
    double fromBeat;
    int fromRow;
    double toBeat;
    int toRow;
    double start, length;
    std::size_t track;
  };
  const Row rows[] = {
      {"moves", 5, 1, 7.4, 1, 6, 4, 1},
      {"moves to a track of the family", 5, 1, 5.2, 2, 4, 4, 2},
      {"stays on its track over another family", 5, 1, 9, 0, 8, 4, 1},
      {"stays on its track below the lanes", 5, 1, 9, 4, 8, 4, 1},
      {"stops at the start", 5, 1, -9, 1, 0, 4, 1},
      {"resizes near the end", 7.9, 1, 9.6, 0, 4, 6, 1},
      {"resizes to a beat at least", 7.9, 1, 1, 1, 4, 1, 1},
      {"is nothing within six points", 5, 1, 5.1, 1, 4, 4, 1},
      {"is nothing from an empty lane", 1, 1, 9, 1, 4, 4, 1},
  };
  for (const Row& row : rows) {
    ArrangementBench bench;
    bench.drag(row.fromBeat, row.fromRow, row.toBeat, row.toRow);
    EXPECT_EQ(bench.clip(1).startBeat, row.start) << row.what;
    EXPECT_EQ(bench.clip(1).lengthBeats, row.length) << row.what;
    EXPECT_EQ(bench.clip(1).trackID, bench.track(row.track).id) << row.what;
    EXPECT_EQ(bench.model->song().clips.size(), 3U) << row.what;
  }
}

TEST(ArrangementGesturesTest, TheDocumentWaitsForTheRelease) {
  ArrangementBench bench;
  const Song before = bench.model->song();
  bench.grab(5, 1);
  bench.pull(8, 2);
  EXPECT_EQ(bench.model->song(), before);
  ASSERT_TRUE(bench.shown().find(bench.clipID(1)));
  EXPECT_EQ(bench.shown().find(bench.clipID(1))->row, 2);
  EXPECT_EQ(bench.shown().clip(*bench.shown().find(bench.clipID(1))).startBeat, 7);
  QTest::mouseRelease(bench.canvas, Qt::LeftButton, {}, bench.at(8, 2));
  EXPECT_EQ(bench.clip(1).startBeat, 7);
  EXPECT_EQ(bench.model->song().patterns.size(), before.patterns.size() + 1);
  EXPECT_EQ(bench.model->selectedClipID(), bench.clipID(1));
  EXPECT_EQ(bench.model->selectedTrackID(), bench.track(2).id);
}

TEST(ArrangementGesturesTest, ACancelledDragChangesNothing) {
  const std::vector<std::function<void(ArrangementBench&)>> ways{
      [](auto& bench) { bench.key(Qt::Key_Escape); },
      [](auto& bench) { QTest::mouseClick(bench.canvas, Qt::RightButton, {}, bench.at(9, 1)); },
      [](auto& bench) { bench.canvas->clearFocus(); },
      [](auto& bench) { bench.view->hide(); },
  };
  for (const auto& cancel : ways) {
    ArrangementBench bench;
    const Song before = bench.model->song();
    const LaneData shown = bench.shown();
    bench.grab(5, 1);
    bench.pull(9, 1);
    ASSERT_NE(bench.shown(), shown);
    cancel(bench);
    EXPECT_EQ(bench.shown(), shown);
    bench.pull(10, 1);
    bench.drop();
    EXPECT_EQ(bench.model->song(), before);
  }
}

TEST(ArrangementGesturesTest, ScrollsByDraggingWhileClipsAreNotEdited) {
  ArrangementBench bench({700, 250});
  const Song before = bench.model->song();
  bench.press("arrangement.editClips");
  bench.grab(5, 1);
  bench.move(bench.at(5, 1) - QPoint(100, 40));
  EXPECT_EQ(bench.view->viewport().scrollOffset, QPointF(100, 40));
  bench.drop();
  EXPECT_EQ(bench.model->song(), before);
}

TEST(ArrangementGesturesTest, ADragAtTheEdgeScrollsOn) {
  ArrangementBench bench({700, 300});
  bench.grab(5, 1);
  bench.move({bench.canvas->width() + 50, 96});
  EXPECT_TRUE(spinUntil([&] { return bench.view->viewport().scrollOffset.x() > 1500; }));
  bench.drop();
  EXPECT_GT(bench.clip(1).startBeat, 30);  // past what was the end of the timeline
}

TEST(ArrangementGesturesTest, TheWheelScrollsAndZooms) {
  ArrangementBench bench({700, 250});
  bench.wheel({0, -120});
  EXPECT_EQ(bench.view->viewport().scrollOffset, QPointF(0, 64));
  bench.wheel({0, -120}, Qt::ShiftModifier);
  EXPECT_EQ(bench.view->viewport().scrollOffset, QPointF(64, 64));
  const QPoint before = bench.at(4, 0);
  bench.wheel({0, 120}, Qt::ControlModifier);
  EXPECT_DOUBLE_EQ(bench.view->viewport().zoom, 1.3);
  EXPECT_LE((bench.at(4, 0) - before).manhattanLength(), 1);
  const QPoint header = bench.part("arrangement.track").mapTo(&*bench.view, QPoint());
  EXPECT_EQ(header.y(), bench.canvas->y() - 64);
}

TEST(ArrangementGesturesTest, PinchesAndButtonsKeepTheZoomInItsRange) {
  ArrangementBench bench;
  for (int press = 0; press < 9; ++press) bench.press("arrangement.zoomIn");
  EXPECT_EQ(bench.view->viewport().zoom, 4);
  const auto gesture = [&](Qt::NativeGestureType type, double value) {
    QNativeGestureEvent event(type, QPointingDevice::primaryPointingDevice(), 2, {600, 200}, {600, 200}, {},
                              value, {});
    QApplication::sendEvent(&*bench.view, &event);
  };
  gesture(Qt::BeginNativeGesture, 0);
  gesture(Qt::ZoomNativeGesture, 1);
  EXPECT_EQ(bench.view->viewport().pointsPerBeat(), 192);
  gesture(Qt::EndNativeGesture, 0);
  EXPECT_EQ(bench.view->viewport().zoom, 4);
  EXPECT_EQ(bench.view->viewport().magnification, 1);
  for (int press = 0; press < 12; ++press) bench.press("arrangement.zoomOut");
  EXPECT_EQ(bench.view->viewport().zoom, 0.25);
}

TEST(ArrangementGesturesTest, OneFingerDragsAndTwoFingersPinch) {
  ArrangementBench bench;
  const std::unique_ptr<QPointingDevice> owned(QTest::createTouchDevice());
  QPointingDevice* const screen = owned.get();
  QWidget* const canvas = bench.canvas;
  QTest::touchEvent(canvas, screen).press(0, bench.at(5, 1), canvas);
  QTest::touchEvent(canvas, screen).move(0, bench.at(7, 1), canvas);
  QTest::touchEvent(canvas, screen).release(0, bench.at(7, 1), canvas);
  EXPECT_EQ(bench.clip(1).startBeat, 6);
  QTest::touchEvent(canvas, screen).press(0, bench.at(8, 2), canvas).press(1, bench.at(10, 2), canvas);
  const QPoint wider = bench.at(12, 2);
  QTest::touchEvent(canvas, screen).move(0, bench.at(8, 2), canvas).move(1, wider, canvas);
  EXPECT_EQ(bench.view->viewport().magnification, 2);
  QTest::touchEvent(canvas, screen).release(1, wider, canvas);
  QTest::touchEvent(canvas, screen).release(0, bench.at(8, 2), canvas);
  EXPECT_EQ(bench.view->viewport().zoom, 2);
  EXPECT_EQ(bench.model->song().clips.size(), 3U);
}

TEST(ClipKeysTest, ArrowsGoFromClipToClipAndFromTrackToTrack) {
  ArrangementBench bench;
  bench.model->placePattern(bench.track(1).id, 0);
  bench.model->selectClip({});
  const auto selected = [&] { return bench.model->selectedClipID(); };
  bench.key(Qt::Key_Right);
  EXPECT_EQ(selected(), bench.clipID(3));
  bench.key(Qt::Key_Right);
  EXPECT_EQ(selected(), bench.clipID(1));
  bench.key(Qt::Key_Right);
  EXPECT_EQ(selected(), bench.clipID(1));
  bench.key(Qt::Key_Down);
  EXPECT_EQ(selected(), bench.clipID(2));
  bench.key(Qt::Key_Down);
  EXPECT_EQ(selected(), std::nullopt);
  EXPECT_EQ(bench.model->selectedTrackID(), bench.track(3).id);
  bench.key(Qt::Key_Up);
  bench.key(Qt::Key_Up);
  bench.key(Qt::Key_End);
  EXPECT_EQ(selected(), bench.clipID(1));
  bench.key(Qt::Key_Delete);
  EXPECT_EQ(bench.model->song().clips.size(), 3U);
}

TEST(ClipKeysTest, ShiftMovesAndWithAltResizes) {
  ArrangementBench bench;
  bench.model->selectClip(bench.clipID(1));
  bench.key(Qt::Key_Right, Qt::ShiftModifier);
  bench.key(Qt::Key_Right, Qt::ShiftModifier | Qt::AltModifier);
  EXPECT_EQ(bench.clip(1).startBeat, 5);
  EXPECT_EQ(bench.clip(1).lengthBeats, 5);
  bench.key(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(bench.clip(1).trackID, bench.track(2).id);
  bench.key(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(bench.clip(1).trackID, bench.track(2).id);
  for (int press = 0; press < 40; ++press) bench.key(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_TRUE(bench.canvas->rect().contains(bench.at(45 + 4.9, 2)));
}

}  // namespace
}  // namespace velmora::testing
