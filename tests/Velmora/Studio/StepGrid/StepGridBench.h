#pragma once

#include <QTest>
#include <gtest/gtest.h>

#include "Velmora/Studio/StepGrid/StepGridView.h"
#include "tests/support/ModelBench.h"
#include "tests/support/Songs.h"

namespace velmora::testing {

/// A window with the grid of a drum pattern: kick on step 0 at 127, closed hat on step 2 at 72.
class StepGridBench : public ::testing::Test {
 protected:
  StepGridBench() : bench_(sampleSong()), view_(model_, uuid(11)) {
    view_.resize(960, 520);
    view_.show();
    view_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view_));
  }

  StepGridCanvas& canvas() { return view_.canvas(); }
  QPoint at(int row, int column) { return canvas().grid().cell({row, column}).center().toPoint(); }
  int velocity(DrumSound sound, int step) const {
    return model_.song().pattern(uuid(11))->stepVelocity(sound, step).value_or(0);
  }

  /// Presses a cell until the press has become a drag.
  void hold(int row, int column) {
    QTest::mousePress(&canvas(), Qt::LeftButton, {}, at(row, column));
    EXPECT_TRUE(spinUntil([&] { return canvas().draggedVelocity().has_value(); }));
  }

  ModelBench bench_;
  AppModel& model_ = *bench_.model;
  StepGridView view_;
};

}  // namespace velmora::testing
