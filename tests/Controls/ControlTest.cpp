#include <gtest/gtest.h>
#include <tuple>
#include <vector>

#include "Controls/Control.h"

namespace controls {
namespace {

// In a frame of 40 by 20 with padding 2 by 1, in a range of 0 to 360, from 90.
const std::tuple<const char*, ControlGeometry, std::vector<QPointF>, float> gestures[] = {
    {"the first event of a drag", TwoDimensionalDrag{}, {{30, 3}}, 90},
    {"right", HorizontalDrag{2}, {{10, 10}, {19, 3}}, 270},
    {"up", VerticalDrag{0.5}, {{10, 10}, {3, 1}}, 180},
    {"up and right adds both", TwoDimensionalDrag{1, 1}, {{10, 10}, {19, 5.5}}, 270},
    {"past the end and back a little", HorizontalDrag{}, {{1, 1}, {90, 1}, {81, 1}}, 270},
    {"no touch between two", HorizontalDrag{}, {{10, 10}, {0, 0}, {19, 10}}, 90},
    {"no touch at a point", HorizontalPoint{}, {{0, 0}}, 90},
    {"angle at the left", Angle{{0, 360}}, {{5, 10}}, 90},
    {"angle at the top", Angle{{0, 360}}, {{20, 2}}, 180},
    {"angle at the right of a range", Angle{{90, 450}}, {{33, 10}}, 180},
    {"no angle at the centre", Angle{{0, 360}}, {{20, 10}}, 90},
    {"turned from the left to the top", AngularDrag{}, {{10, 10}, {20, 5}}, 180},
    {"point across", HorizontalPoint{}, {{11, 19}}, 90},
    {"point up", VerticalPoint{}, {{30, 5.5}}, 270},
};

TEST(ControlTest, gesturesSetValues) {
  for (const auto& [name, geometry, locations, expected] : gestures) {
    Control control;
    control.geometry = geometry;
    control.range = {0, 360};
    control.rect = {0, 0, 40, 20};
    control.padding = {2, 1};
    control.value = 90;
    for (QPointF location : locations) control.moveTo(location);
    EXPECT_NEAR(control.value, expected, 1e-3F) << name;
  }
}

TEST(ControlTest, aNewDragStartsWhereItTouches) {
  Control control;
  control.rect = {0, 0, 38, 38};
  for (int i = 0; i < 2; ++i) {
    control.end();
    control.moveTo({5, 38});
    control.moveTo({5, 19});
  }
  EXPECT_EQ(control.value, 1);
}

}  // namespace
}  // namespace controls
