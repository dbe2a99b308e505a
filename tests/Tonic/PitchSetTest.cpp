#include <gtest/gtest.h>

#include "Tonic/PitchSet.h"

namespace tonic {
namespace {

TEST(PitchSetTest, holdsEveryPitchInRisingOrder) {
  PitchSet all, odd;
  std::vector<Pitch> even;
  for (int number = 127; number >= -128; --number) all.add(Pitch(number));
  for (int number = 0; number < 128; ++number)
    number % 2 ? odd.add(Pitch(number)) : even.push_back(Pitch(number));
  EXPECT_EQ(all.subtracting(odd).array(), even);
  EXPECT_EQ(all.array().size(), 128U);
  EXPECT_TRUE(odd.contains(Pitch(127)) && !odd.contains(Pitch(0)) && !all.contains(Pitch(-1)));
  EXPECT_TRUE(all.subtracting(all).array().empty());
  for (Pitch pitch : even) all.remove(pitch);
  EXPECT_EQ(all, odd);
}

}  // namespace
}  // namespace tonic
