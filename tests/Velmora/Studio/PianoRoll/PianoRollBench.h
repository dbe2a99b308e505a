#pragma once

#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

#include "Velmora/Studio/PianoRoll/PianoEditorView.h"
#include "Velmora/Studio/PianoRoll/PianoRollCanvasView.h"
#include "Velmora/Studio/PianoRoll/PitchName.h"
#include "tests/support/ModelBench.h"
#include "tests/support/Songs.h"

namespace velmora::testing {

/// A window with the editor of an empty pattern of 8 beats; points are the canvas's.
class PianoRollBench : public ::testing::Test {
 protected:
  PianoRollBench() { open(TrackKind::synth(SynthPreset::pad)); }

  void open(TrackKind kind) {
    Song song;
    song.id = UUID::random();
    trackID_ = song.addTrack(kind).id;
    Pattern pattern = song.addPattern(trackID_);
    patternID_ = pattern.id;
    pattern.lengthBeats = 8;
    song.update(pattern);
    song.selectPattern(patternID_, trackID_);
    view_.reset();
    bench_ = std::make_unique<ModelBench>(song);
    model_ = bench_->model.get();
    model_->selectTrack(trackID_);
    view_ = std::make_unique<PianoEditorView>(*model_, patternID_, trackID_);
    view_->resize(1000, 640);
    view_->show();
    view_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(view_.get()));
    canvas_ = static_cast<PianoRollCanvasView*>(find<QWidget>("piano.canvas"));
  }

  template <class Child>
  Child* find(const char* name) {
    auto* child = view_->findChild<QWidget*>(name);
    EXPECT_TRUE(child) << name;
    return static_cast<Child*>(child);
  }
  void press(const char* button) { QTest::mouseClick(find<QWidget>(button), Qt::LeftButton); }
  bool isShown(const char* name) { return find<QWidget>(name)->isVisible(); }

  const Pattern& pattern() const { return *model_->song().pattern(patternID_); }
  QScrollArea& area() { return *static_cast<QScrollArea*>(canvas_->parentWidget()->parentWidget()); }
  static void settle() { QCoreApplication::processEvents(); }

  QPoint at(int pitch, double beat) const {
    return QPointF(canvas_->roll().x(beat), canvas_->roll().y(pitch) + 9).toPoint();
  }
  void tap(QPoint point) { QTest::mouseClick(canvas_, Qt::LeftButton, {}, point); }
  void drag(QPoint from, QPoint by) {
    hold(from, by);
    QTest::mouseRelease(canvas_, Qt::LeftButton, {}, from + by);
  }
  void hold(QPoint from, QPoint by) {
    const QPoint start = canvas_->mapToGlobal(from);
    QTest::mousePress(canvas_, Qt::LeftButton, {}, from);
    for (const QPoint& place : {start + by / 2, start + by}) {
      QMouseEvent move(QEvent::MouseMove, canvas_->mapFromGlobal(place), place, Qt::NoButton, Qt::LeftButton,
                       {});
      QApplication::sendEvent(canvas_, &move);
    }
  }
  void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(canvas_, key, modifiers); }

  /// The notes in their order, as "C4 1+0.25 v100", the selected one with a star.
  std::string score() const {
    std::string text;
    for (const Note& note : pattern().notes) {
      text += QString("%1%2 %3+%4 v%5 ")
                  .arg(model_->selectedNoteID() == note.id ? "*" : "", pitchName(note.pitch))
                  .arg(note.startBeat)
                  .arg(note.durationBeats)
                  .arg(note.velocity)
                  .toStdString();
    }
    return text;
  }

  UUID trackID_, patternID_;
  std::unique_ptr<ModelBench> bench_;
  AppModel* model_ = nullptr;
  std::unique_ptr<PianoEditorView> view_;
  PianoRollCanvasView* canvas_ = nullptr;
};

}  // namespace velmora::testing
