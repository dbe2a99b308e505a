#include <QAccessible>

#include "Velmora/Studio/PianoRoll/PianoRollCanvasView.h"
#include "tests/Velmora/Studio/PianoRoll/PianoRollBench.h"
#include "tests/support/GoldenPicture.h"

namespace velmora {
namespace {

class PianoRollCanvasViewTest : public testing::PianoRollBench {};

TEST_F(PianoRollCanvasViewTest, ATapAddsOrSelects) {
  tap(at(60, 1.2));
  EXPECT_EQ(score(), "*C4 1+0.25 v100 ");
  tap(at(62, 0));
  tap(at(60, 1.1));
  EXPECT_EQ(score(), "*C4 1+0.25 v100 D4 0+0.25 v100 ");
  tap(at(64, 8.1));
  tap({47, 100});
  tap({300, 18 * 24 + 1});
  EXPECT_EQ(score(), "C4 1+0.25 v100 D4 0+0.25 v100 *E4 7.75+0.25 v100 ");
}

TEST_F(PianoRollCanvasViewTest, ADragMovesOrResizes) {
  tap(at(60, 1));
  drag(at(60, 1.2), {84, 0});  // within the last 14 points
  EXPECT_EQ(score(), "*C4 1+0.75 v100 ");
  drag(at(60, 1.1), {45, -40});
  EXPECT_EQ(score(), "*D4 1.25+0.75 v100 ");
  drag(at(62, 2) - QPoint(1, 0), {-300, 50});
  EXPECT_EQ(score(), "*D4 1.25+0.25 v100 ");
  tap(at(70, 3));
  drag(at(62, 1.3), {-400, 0});
  EXPECT_EQ(score(), "*D4 0+0.25 v100 A♯4 3+0.25 v100 ");
  drag(at(70, 3.1), {2000, -1500});
  EXPECT_EQ(score(), "D4 0+0.25 v100 *G9 7.75+0.25 v100 ");
  area().horizontalScrollBar()->setValue(0);
  drag(at(62, 0.1), {3, 3});  // too short for a drag
  EXPECT_EQ(score(), "*D4 0+0.25 v100 G9 7.75+0.25 v100 ");
}

TEST_F(PianoRollCanvasViewTest, ADragShowsItselfAndLeavesTheDocumentAlone) {
  tap(at(60, 1));
  const QImage before = canvas_->grab().toImage();
  hold(at(60, 1.1), {160, -36});
  EXPECT_EQ(score(), "*C4 1+0.25 v100 ");
  const QImage meanwhile = canvas_->grab().toImage();
  const double scale = before.devicePixelRatio();
  const auto color = [&](const QImage& image, int pitch, double beat) {
    return image.pixelColor((QPointF(at(pitch, beat) - QPoint(0, 4)) * scale).toPoint());
  };
  EXPECT_EQ(color(meanwhile, 62, 2.17), color(before, 60, 1.17));
  EXPECT_NE(color(meanwhile, 60, 1.17), color(before, 60, 1.17));
}

TEST_F(PianoRollCanvasViewTest, ACancelledDragChangesNothing) {
  const std::pair<const char*, std::function<void()>> cancels[] = {
      {"Escape", [this] { type(Qt::Key_Escape); }},
      {"second button", [this] { QTest::mousePress(canvas_, Qt::RightButton, {}, at(60, 3)); }},
      {"focus", [this] { canvas_->clearFocus(); }},
      {"hidden", [this] { canvas_->hide(); }},
      {"switched off", [this] { canvas_->setEditsNotes(false); }},
  };
  tap(at(60, 1));
  for (const auto& [name, cancel] : cancels) {
    hold(at(60, 1.1), {160, 0});
    cancel();
    QTest::mouseRelease(canvas_, Qt::LeftButton, {}, at(60, 2));
    EXPECT_EQ(score(), "*C4 1+0.25 v100 ") << name;
    canvas_->show();
    canvas_->setEditsNotes(true);
  }
  hold(at(60, 1.1), {160, 0});
  model_->deleteSelectedNote();
  settle();
  QTest::mouseRelease(canvas_, Qt::LeftButton, {}, at(60, 2));
  EXPECT_EQ(score(), "");
  EXPECT_EQ(canvas_->pos(), QPoint());
  tap(at(60, 1));
  hold(at(60, 1.1), {160, 0});
  view_.reset();
  EXPECT_EQ(score(), "*C4 1+0.25 v100 ");
}

TEST_F(PianoRollCanvasViewTest, WithoutEditingADragScrolls) {
  tap(at(60, 3));
  press("piano.edit");
  tap(at(62, 2));
  drag(at(60, 3.1), {-90, 0});
  EXPECT_EQ(score(), "*C4 3+0.25 v100 ");
  EXPECT_EQ(area().horizontalScrollBar()->value(), 90);
  press("piano.edit");
  tap(QPoint(90 + 40, 100));  // under the names
  EXPECT_EQ(score(), "*C4 3+0.25 v100 ");
}

TEST_F(PianoRollCanvasViewTest, TheComputersKeysEdit) {
  canvas_->setFocus(Qt::TabFocusReason);
  for (Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Up, Qt::Key_Return}) type(key);
  EXPECT_EQ(score(), "*C♯4 0.5+0.25 v100 ");
  const std::tuple<Qt::Key, Qt::KeyboardModifiers, const char*> steps[] = {
      {Qt::Key_Right, Qt::ShiftModifier, "*C♯4 0.75+0.25 v100 "},
      {Qt::Key_Down, Qt::ShiftModifier, "*C4 0.75+0.25 v100 "},
      {Qt::Key_Right, Qt::ShiftModifier | Qt::AltModifier, "*C4 0.75+0.5 v100 "},
      {Qt::Key_Right, Qt::ShiftModifier | Qt::ControlModifier, "*C4 0.75+0.75 v100 "},
      {Qt::Key_Left, Qt::ShiftModifier | Qt::AltModifier, "*C4 0.75+0.5 v100 "},
      {Qt::Key_Plus, Qt::ShiftModifier, "*C4 0.75+0.5 v108 "},
      {Qt::Key_Minus, Qt::NoModifier, "*C4 0.75+0.5 v100 "},
      {Qt::Key_Up, Qt::NoModifier, "*C4 0.75+0.5 v100 "},
      {Qt::Key_End, Qt::NoModifier, "*C4 0.75+0.5 v100 "},
      {Qt::Key_PageUp, Qt::NoModifier, "*C4 0.75+0.5 v100 "},
      {Qt::Key_Space, Qt::NoModifier, "C4 0.75+0.5 v100 *C♯5 7.75+0.25 v100 "},
      {Qt::Key_PageDown, Qt::NoModifier, "C4 0.75+0.5 v100 *C♯5 7.75+0.25 v100 "},
      {Qt::Key_Home, Qt::NoModifier, "C4 0.75+0.5 v100 *C♯5 7.75+0.25 v100 "},
      {Qt::Key_Delete, Qt::NoModifier, "C4 0.75+0.5 v100 "},
  };
  for (const auto& [key, modifiers, expected] : steps) {
    type(key, modifiers);
    settle();
    EXPECT_EQ(score(), expected) << key;
  }
  tap(at(48, 4));  // the mouse leads now: Return is the transport's
  EXPECT_FALSE(canvas_->property("keepsActivationKeys").toBool());
  type(Qt::Key_Right);
  type(Qt::Key_Return);
  EXPECT_EQ(score(), "C4 0.75+0.5 v100 *C3 4+0.25 v100 ");
}

TEST_F(PianoRollCanvasViewTest, WheelAndPinchZoomAroundThePointer) {
  const auto wheel = [&](QWidget* receiver, int angle, Qt::KeyboardModifiers modifiers) {
    const QPointF place = canvas_->mapToGlobal(at(60, 3));
    QWheelEvent event(receiver->mapFromGlobal(place), place, {}, {0, angle}, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(receiver, &event);
    settle();
  };
  const auto shownAt = [&] { return canvas_->mapTo(view_.get(), at(60, 3)).x(); };
  area().horizontalScrollBar()->setValue(100);
  const int before = shownAt();
  wheel(canvas_, 120, Qt::ControlModifier);
  EXPECT_EQ(canvas_->roll().pointsPerBeat, 200);
  EXPECT_NEAR(shownAt(), before, 1);
  const auto pinch = [&](Qt::NativeGestureType type, double value) {
    const QPointF place = at(60, 3);
    QNativeGestureEvent event(type, QPointingDevice::primaryPointingDevice(), 2, place, place,
                              canvas_->mapToGlobal(place), value, {});
    QApplication::sendEvent(canvas_, &event);
  };
  pinch(Qt::BeginNativeGesture, 0);
  for (int i = 0; i < 20; ++i) pinch(Qt::ZoomNativeGesture, 0.1);
  EXPECT_EQ(canvas_->roll().pointsPerBeat, 480);
  EXPECT_NEAR(shownAt(), before, 2);
  pinch(Qt::EndNativeGesture, 0);
  press("piano.zoomOut");
  EXPECT_FLOAT_EQ(float(canvas_->roll().pointsPerBeat), 384);
  area().horizontalScrollBar()->setValue(0);
  wheel(area().viewport(), -120, Qt::ShiftModifier);
  EXPECT_EQ(area().horizontalScrollBar()->value(), 60);
}

/// Notes loud and soft, selected and not, over the end of the pattern's 8 beats; without names.
TEST_F(PianoRollCanvasViewTest, LooksAsItDid) {
  std::vector<QRect> names{QRect(0, 0, int(canvas_->roll().keyWidth), canvas_->height())};
  model_->editMelodicPattern(patternID_, [](Pattern& pattern) {
    for (std::uint8_t i = 0; i < 8; ++i)
      pattern.notes.write().push_back(testing::note(static_cast<std::uint8_t>(52 + 2 * i), 0.5 * i,
                                                    0.25 * (1 + i % 4),
                                                    static_cast<std::uint8_t>(1 + 18 * i)));
  });
  model_->selectNote(pattern().notes[3].id);
  settle();
  for (const Note& note : pattern().notes) {
    const QRect frame = canvas_->roll().noteRect(note).toRect();
    names.emplace_back(frame.x() + 5, frame.y() + 3, 22, frame.height() - 6);
  }
  EXPECT_TRUE(testing::isGolden(testing::pictureOf(*canvas_, {0, 90, 720, 280}, names), "piano_roll"));
}

TEST_F(PianoRollCanvasViewTest, AScreenReaderReachesEveryNote) {
  tap(at(61, 1.5));
  tap(at(48, 0));
  auto* seen = QAccessible::queryAccessibleInterface(canvas_);
  ASSERT_EQ(seen->childCount(), 2);
  auto* note = seen->child(0);
  EXPECT_EQ(note->text(QAccessible::Name), "C♯4, beat 2.50");
  EXPECT_EQ(note->text(QAccessible::Value), "100");
  EXPECT_EQ(note->parent(), seen);
  EXPECT_EQ(seen->indexOfChild(seen->child(1)), 1);
  const QPoint middle = note->rect().center();
  EXPECT_EQ(seen->childAt(middle.x(), middle.y()), note);
  auto* actions = note->actionInterface();
  actions->doAction(actions->actionNames().front());
  EXPECT_TRUE(note->state().selected);
  note->valueInterface()->setCurrentValue(300);
  actions->doAction("Move up a semitone");
  EXPECT_EQ(score(), "*D4 1.5+0.25 v127 C3 0+0.25 v100 ");
  actions->doAction("Move down a semitone");
  actions->doAction(QAccessibleActionInterface::setFocusAction());
  EXPECT_EQ(seen->focusChild(), note);
  actions->doAction("Delete");
  EXPECT_EQ(score(), "C3 0+0.25 v100 ");
  EXPECT_TRUE(note->state().invalid);
  EXPECT_TRUE(actions->actionNames().isEmpty());
  ASSERT_EQ(seen->childCount(), 1);
  EXPECT_EQ(seen->child(0)->text(QAccessible::Name), "C3, beat 1.00");
}

}  // namespace
}  // namespace velmora
