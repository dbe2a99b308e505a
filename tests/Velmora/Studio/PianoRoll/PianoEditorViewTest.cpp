#include <QComboBox>
#include <QSlider>

#include "Velmora/Studio/PianoRoll/PianoEditorView.h"
#include "tests/Velmora/Studio/PianoRoll/PianoRollBench.h"

namespace velmora {
namespace {

class PianoEditorViewTest : public testing::PianoRollBench {
 protected:
  QString text(const char* button) { return find<QAbstractButton>(button)->text(); }
  QString spoken(const char* name) {
    return QAccessible::queryAccessibleInterface(find<QWidget>(name))->text(QAccessible::Value);
  }
  /// The loudest sample of so many seconds.
  float peak(double seconds) {
    float peak = 0;
    for (int i = 0; i < seconds * 100; ++i) peak = std::max(peak, bench_->device->pull(480).peak());
    return peak;
  }
};

TEST_F(PianoEditorViewTest, TheToolbarWorks) {
  EXPECT_EQ(find<QComboBox>("piano.preset")->currentText(), "Pad");
  find<QComboBox>("piano.preset")->setFocus(Qt::TabFocusReason);
  QTest::keyClick(find<QComboBox>("piano.preset"), Qt::Key_Down);
  EXPECT_EQ(model_->song().track(trackID_)->kind.preset(), SynthPreset::lead);
  EXPECT_EQ(spoken("piano.octave"), "Octave 3");
  EXPECT_FALSE(find<QAbstractButton>("piano.delete")->isEnabled());
  press("piano.add");
  EXPECT_EQ(score(), "*C4 0+0.25 v100 ");
  settle();
  press("piano.delete");
  EXPECT_EQ(score(), "");
  for (int i = 0; i < 9; ++i) QTest::keyClick(find<QWidget>("piano.octave"), Qt::Key_Up);
  EXPECT_EQ(spoken("piano.octave"), "Octave 9");
  press("piano.add");
  EXPECT_EQ(score(), "*G9 0+0.25 v100 ");
  press("piano.zoomIn");
  EXPECT_EQ(canvas_->roll().pointsPerBeat, 200);
  view_->resize(540, 480);
  settle();
  EXPECT_EQ(view_->width(), 540);
  EXPECT_EQ(find<QWidget>("piano.add")->width(), 44);  // its symbol alone
}

TEST_F(PianoEditorViewTest, TheInspectorEditsTheSelectedNote) {
  EXPECT_FALSE(isShown("piano.pitch"));
  tap(at(60, 1));
  settle();
  EXPECT_TRUE(isShown("piano.pitch"));
  EXPECT_EQ(spoken("piano.pitch"), "Pitch C4");
  QTest::keyClick(find<QWidget>("piano.pitch"), Qt::Key_Down);
  QTest::keyClick(find<QWidget>("piano.velocity"), Qt::Key_Right);
  press("piano.lengthen");
  press("piano.lengthen");
  press("piano.shorten");
  settle();
  EXPECT_EQ(score(), "*B3 1+0.5 v101 ");
  EXPECT_EQ(spoken("piano.pitch"), "Pitch B3");
  EXPECT_EQ(find<QSlider>("piano.velocity")->accessibleName(), "Note velocity");
  model_->selectNote({});
  settle();
  EXPECT_FALSE(isShown("piano.pitch"));
}

TEST_F(PianoEditorViewTest, TheKeyboardShowsByHeightUntilTheUserChooses) {
  EXPECT_TRUE(isShown("piano.keys"));
  EXPECT_EQ(text("piano.keyboard"), "Hide Keyboard");
  view_->resize(1000, 499);
  EXPECT_FALSE(isShown("piano.keys"));
  view_->resize(1000, 500);
  EXPECT_TRUE(isShown("piano.keys"));
  press("piano.keyboard");
  EXPECT_FALSE(isShown("piano.keys"));
  EXPECT_EQ(text("piano.keyboard"), "Show Keyboard");
  press("piano.keyboard");
  view_->resize(1000, 400);
  EXPECT_TRUE(isShown("piano.keys"));
}

TEST_F(PianoEditorViewTest, KeysSoundUntilTheyAreLeft) {
  bench_->open();
  model_->selectTrack(trackID_);
  const std::pair<const char*, std::function<void()>> ends[] = {
      {"released", [this] { QTest::mouseRelease(find<QWidget>("piano.keys"), Qt::LeftButton); }},
      {"hidden", [this] { press("piano.keyboard"); }},
      {"other track", [this] { model_->selectTrack({}); }},
  };
  for (const auto& [name, end] : ends) {
    QTest::mousePress(find<QWidget>("piano.keys"), Qt::LeftButton, {}, {20, 60});
    EXPECT_GT(peak(0.3), 0.01F) << name;
    EXPECT_GT(peak(3), 0.01F) << name;
    end();
    peak(5);
    EXPECT_LT(peak(0.1), 0.001F) << name;
    QTest::mouseRelease(find<QWidget>("piano.keys"), Qt::LeftButton);
  }
}

TEST_F(PianoEditorViewTest, ANewNoteIsHeardForAMoment) {
  bench_->open();
  tap(at(60, 1));
  EXPECT_GT(peak(0.2), 0.01F);
  EXPECT_TRUE(testing::spinUntil([&] { return peak(0.5) < 0.001F; }));
}

TEST_F(PianoEditorViewTest, OtherTracksKeepTheirNotes) {
  for (const TrackKind kind : {TrackKind::drums(), TrackKind::audio()}) {
    open(kind);
    tap(at(60, 1));
    press("piano.add");
    EXPECT_EQ(score(), "");
    EXPECT_FALSE(model_->selectedNoteID());
  }
}

}  // namespace
}  // namespace velmora
