#include <gtest/gtest.h>
#include <tuple>

#include "Velmora/Studio/StepGrid/DrumStepControl.h"

namespace velmora {
namespace {

using Release = DrumStepControl::Release;

class DrumStepControlTest : public ::testing::Test {
 protected:
  DrumStepControl control(std::optional<std::uint8_t> velocity) {
    return {{DrumSound::closedHat, 17, velocity},
            {[this] { heard_ += "toggle "; }, [this](int value) { heard_ += QString::number(value) + ' '; }}};
  }

  QString heard_;
};

TEST_F(DrumStepControlTest, NamesItsStep) {
  const auto words = [](const DrumStep& step) {
    return step.label() + '|' + step.value() + '|' + step.help() + '|' + step.identifier();
  };
  EXPECT_EQ(words({DrumSound::closedHat, 17, 96}),
            "Closed Hat, bar 2, step 2|On, velocity 96|Closed Hat · Step 2 · Velocity 96|step.42.17");
  EXPECT_EQ(words({DrumSound::kick, 0}), "Kick, bar 1, step 1|Off|Kick · Step 1|step.36.0");
}

TEST_F(DrumStepControlTest, OffersWhatTheStepAllows) {
  for (const DrumStepControl& step : {control({}), control(125)}) {
    for (const auto& item : step.menu()) {
      heard_ += item.text + ": ";
      item.run();
    }
    for (const int steps : {1, -1}) step.adjustVelocity(steps);
    step.setVelocity(3);
  }
  EXPECT_EQ(heard_,
            "Enable Step: toggle Disable Step: toggle Soft · 40: 40 Medium · 80: 80 "
            "Accent · 127: 127 133 117 3 ");
}

TEST_F(DrumStepControlTest, TurnsAPressIntoAToggleOrADrag) {
  enum class Hold { none, before, after };  // the first move
  constexpr auto inside = Release::inside, outside = Release::outside;
  const std::tuple<int, Hold, QPointF, QPointF, Release, QString> rows[] = {
      {100, Hold::none, {0, 0}, {0, 0}, inside, "toggle "},
      {100, Hold::none, {0, 0}, {50, 0}, outside, ""},
      {100, Hold::before, {0, 0}, {0, -7.4}, outside, "107 "},
      {100, Hold::before, {0, 0}, {0, -200}, outside, "127 "},
      {100, Hold::before, {0, 0}, {0, 200}, outside, "1 "},
      {100, Hold::before, {0, 0}, {30, 0}, inside, "100 "},
      {100, Hold::after, {6, 8}, {6, 18}, inside, "90 "},        // exactly 10 points aside
      {100, Hold::after, {6, 8.1}, {6, 18}, inside, "toggle "},  // too far for a long press
      {0, Hold::before, {0, 0}, {0, -5}, inside, "toggle "},     // off
  };
  for (const auto& [velocity, hold, first, last, where, heard] : rows) {
    DrumStepControl step = control(velocity ? std::optional<std::uint8_t>(velocity) : std::nullopt);
    step.press({0, 0});
    if (hold == Hold::before) step.hold();
    step.moveTo(first);
    if (hold == Hold::after) step.hold();
    step.moveTo(last);
    EXPECT_EQ(heard_, "");
    step.release(where);
    EXPECT_EQ(std::exchange(heard_, {}), heard) << last.x() << ' ' << last.y();
  }
}

}  // namespace
}  // namespace velmora
