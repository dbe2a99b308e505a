#include <gtest/gtest.h>

#include "Keyboard/KeyboardModel.h"
#include "Keyboard/PianoSpacer.h"

namespace keyboard {
namespace {

using tonic::Pitch;

class KeyboardModelTest : public testing::Test {
 protected:
  KeyboardModelTest() {
    model.keyRectInfos =
        PianoSpacer{PitchRange::twoOctavesFrom(48)}.keyRectInfos({1500, 100});  // white keys 100 wide
    model.noteOn = [this](Pitch pitch, QPointF) { heard += "+" + std::to_string(pitch.intValue()) + " "; };
    model.noteOff = [this](Pitch pitch) { heard += "-" + std::to_string(pitch.intValue()) + " "; };
  }

  std::string play(const std::vector<std::vector<QPointF>>& steps) {
    for (const auto& locations : steps) model.setTouchLocations(locations);
    return std::exchange(heard, {});
  }

  const QPointF c{30, 90}, cAgain{40, 80}, cSharp{90, 20}, d{150, 90}, e{299, 99}, f{300, 99}, off{30, 100};
  KeyboardModel model;
  std::string heard;
};

TEST_F(KeyboardModelTest, touchesPlayScores) {
  EXPECT_EQ(play({{c}, {}}), "+48 -48 ");
  EXPECT_EQ(play({{cSharp}, {}}), "+49 -49 ");
  EXPECT_EQ(play({{c}, {d}, {e}, {}}), "+48 -48 +50 -50 +52 -52 ");
  EXPECT_EQ(play({{c, d}, {d, e}, {}}), "+48 +50 -48 +52 -50 -52 ");
  EXPECT_EQ(play({{c, cAgain}, {cAgain}, {}}), "+48 -48 ");
  EXPECT_EQ(play({{c}, {off}, {}}), "+48 -48 ");
  EXPECT_EQ(play({{c}, {c}, {cAgain}, {}, {}}), "+48 -48 ");
  EXPECT_EQ(play({{e, f}, {}}), "+52 +53 -52 -53 ");
  play({{d}});
  EXPECT_EQ(model.normalizedPoints()[50], QPointF(0.5, 0.9));
}

TEST_F(KeyboardModelTest, latchedKeysStayUntilTheNextTouch) {
  model.latching = true;
  EXPECT_EQ(play({{c}, {}, {d}, {}, {c}, {}}), "+48 +50 -48 ");
  EXPECT_EQ(model.activePitches(), tonic::PitchSet{Pitch(50)});
}

TEST_F(KeyboardModelTest, anActivatedKeyEndsOnlyWhenItIsNotTouched) {
  for (int pitch : {48, 48, 50}) model.activate(Pitch(pitch));
  model.setTouchLocations({d});
  heard.clear();
  for (int pitch : {50, 48, 48}) model.deactivate(Pitch(pitch));
  EXPECT_EQ(heard, "-48 ");
  EXPECT_EQ(model.activePitches(), tonic::PitchSet{Pitch(50)});
}

}  // namespace
}  // namespace keyboard
