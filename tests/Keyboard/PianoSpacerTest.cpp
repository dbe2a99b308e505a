#include <gtest/gtest.h>
#include <map>

#include "Keyboard/PianoSpacer.h"
#include "Tonic/Note.h"

namespace keyboard {
namespace {

using tonic::Pitch;

TEST(PitchRangeDeathTest, twoOctavesStayWithinMIDIAndTheEndIsNeverBelowTheStart) {
  constexpr int ranges[][3] = {{48, 48, 72}, {110, 110, 127}, {127, 127, 127},
                               {-10, 0, 14}, {-30, 0, 0},     {1 << 30, 127, 127}};
  for (const auto& [lowerPitch, lower, upper] : ranges) {
    EXPECT_EQ(PitchRange::twoOctavesFrom(lowerPitch), PitchRange(Pitch(lower), Pitch(upper))) << lowerPitch;
  }
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(PitchRange(Pitch(60), Pitch(59)), "The pitches end at 59, below their start at 60.");
}

TEST(PianoSpacerTest, whereverAKeyboardStartsItsKeysLieTheSame) {
  const std::map<int, double> offsets{{1, 0.625}, {3, 0.8125}, {6, 0.625}, {8, 0.71875}, {10, 0.8125}};
  for (int lower = 0; lower < 128; ++lower) {
    const auto keys = PianoSpacer{PitchRange::twoOctavesFrom(lower)}.keyRectInfos({600, 100});
    const auto whites = std::count_if(keys.begin(), keys.end(), [](auto& key) { return key.zIndex == 0; });
    const double width = 600.0 / static_cast<double>(whites);
    std::map<int, double> starts;
    for (const auto& [rect, pitch, zIndex] : keys) {
      const int number = pitch.intValue();
      ASSERT_EQ(zIndex, isNatural(pitch) ? 0 : 1);
      const double start = zIndex == 0 ? width * static_cast<double>(starts.size())
                                       : starts.at(number - 1) + width * offsets.at(number % 12);
      if (zIndex == 0) starts[number] = start;
      EXPECT_NEAR(rect.left(), start, 1e-9) << lower << " " << number;
      EXPECT_NEAR(rect.width(), zIndex == 0 ? width : width * 0.5625, 1e-9);
      EXPECT_EQ(rect.height(), zIndex == 0 ? 100 : 53);
    }
    EXPECT_NEAR(keys[static_cast<std::size_t>(whites) - 1].rect.right(), 600, 1e-9);
    EXPECT_EQ(whites, lower == 48 ? 15 : whites);
  }
}

}  // namespace
}  // namespace keyboard
