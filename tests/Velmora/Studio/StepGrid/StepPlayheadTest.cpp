#include <QPaintEvent>

#include "Velmora/Studio/StepGrid/StepPlayhead.h"
#include "tests/Velmora/Studio/StepGrid/StepGridBench.h"

namespace velmora {
namespace {

/// Collects what a widget paints.
class PaintedRegion final : public QObject {
 public:
  explicit PaintedRegion(QWidget& widget) { widget.installEventFilter(this); }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent*>(event)->region();
    return false;
  }
  QRegion region;
};

class StepPlayheadTest : public testing::StepGridBench {
 protected:
  /// Plays so many beats, then lets the views see it.
  void render(double beats) {
    for (int frames = static_cast<int>(beats * 60 / 128 * 48000); frames > 0; frames -= 4096) {
      bench_.device->pull(std::min(frames, 4096));
    }
  }
  QRect place(int column) { return canvas().grid().column(column).toAlignedRect(); }
  bool awaitColumn(int column) {
    return testing::spinUntil([&] { return view_.playhead().geometry() == place(column); });
  }
};

TEST_F(StepPlayheadTest, RepaintsOnlyTheColumnsItLeavesAndEnters) {
  bench_.open();
  model_.setMode(PlaybackMode::pattern);
  model_.play();
  render(0.1);
  ASSERT_TRUE(awaitColumn(0));
  QTest::qWait(0);
  PaintedRegion cells(canvas()), around(*view_.viewport());
  render(0.02);
  QTest::qWait(50);  // some frames within one step
  EXPECT_TRUE(cells.region.isEmpty());
  render(0.28);
  ASSERT_TRUE(awaitColumn(1) && testing::spinUntil([&] { return !cells.region.isEmpty(); }));
  const QRegion allowed = QRegion(place(0)) + place(1);
  EXPECT_TRUE(cells.region.subtracted(allowed).isEmpty());
  EXPECT_TRUE(around.region.subtracted(allowed.translated(canvas().pos())).isEmpty());
  render(4);
  ASSERT_TRUE(awaitColumn(1)) << "it wraps with the pattern";
  model_.pause();
  QTest::qWait(0);
  cells.region = {};
  QTest::qWait(50);
  EXPECT_TRUE(cells.region.isEmpty()) << "it stands still";
}

TEST_F(StepPlayheadTest, MarksWhatSoundsInTheSong) {
  model_.seek(5.25);
  EXPECT_TRUE(awaitColumn(5)) << "a jump shows without playing";
  model_.seek(8);
  EXPECT_TRUE(testing::spinUntil([&] { return view_.playhead().size().isEmpty(); }));
}

}  // namespace
}  // namespace velmora
