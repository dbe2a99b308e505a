#include <gtest/gtest.h>

#include "Velmora/Theme/PopoverPlace.h"

namespace velmora {
namespace {

TEST(PopoverPlaceTest, KeepsToTheSideWithMoreRoomAndToTheScreen) {
  const QRect screen(100, 50, 1000, 800);
  const QSize size(230, 140);
  const struct {
    const char* name;
    QRect anchor;
    QPoint place;
  } rows[] = {
      {"above a bar at the foot", {500, 780, 68, 50}, {418, 634}},
      {"below a bar at the head", {500, 60, 68, 50}, {418, 116}},
      {"at the left edge", {100, 780, 20, 50}, {100, 634}},
      {"at the right edge", {1080, 780, 20, 50}, {870, 634}},
      {"where neither side has the room", {500, 100, 68, 700}, {418, 50}},
  };
  for (const auto& row : rows) EXPECT_EQ(popoverPlace(row.anchor, size, screen), row.place) << row.name;
}

}  // namespace
}  // namespace velmora
