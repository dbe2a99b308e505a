#include <gtest/gtest.h>
#include <tuple>

#include "Velmora/Studio/StepGrid/StepGridGeometry.h"
#include "VelmoraCore/Song/Pattern.h"

namespace velmora {
namespace {

TEST(StepGridGeometryTest, CutsPatternsIntoPages) {
  const std::tuple<double, int, int> rows[] = {{4, 1, 16},   {4.25, 2, 1}, {0.25, 1, 1}, {8, 2, 16},
                                               {7.3, 2, 14}, {0, 1, 0},    {-1, 1, 0}};
  for (const auto& [lengthBeats, pageCount, onLastPage] : rows) {
    const StepPages pages{Pattern{.lengthBeats = lengthBeats}.stepCount()};
    EXPECT_EQ(pages.count(), pageCount) << lengthBeats;
    EXPECT_EQ(pages.visibleCount(pages.clamped(99)), onLastPage) << lengthBeats;
  }
}

TEST(StepGridGeometryTest, FillsTheWidthOrKeepsTheLeast) {
  const std::tuple<double, int, double, int> rows[] = {
      {1600, 16, 100, 1600}, {704, 16, 44, 704}, {300, 16, 44, 704}, {1000, 1, 1000, 1000}, {500, 0, 500, 0}};
  for (const auto& [width, stepCount, cellWidth, gridWidth] : rows) {
    const auto grid = StepGridGeometry::fitting(width, stepCount);
    EXPECT_EQ(grid.cellWidth, cellWidth);
    EXPECT_EQ(grid.size(), QSize(gridWidth, 352));
  }
}

TEST(StepGridGeometryTest, FindsTheCellUnderAPoint) {
  const auto grid = StepGridGeometry::fitting(1000, 16);
  EXPECT_EQ(grid.placeAt({62.4, 43.9}), (StepPlace{0, 0}));
  EXPECT_EQ(grid.placeAt({62.5, 44}), (StepPlace{1, 1}));
  for (const QPointF outside : {QPointF(1000, 20), {20, 352}, {-0.1, 20}})
    EXPECT_FALSE(grid.placeAt(outside));
  for (const StepPlace place : grid.places()) EXPECT_EQ(grid.placeAt(grid.cell(place).center()), place);
}

TEST(StepGridGeometryTest, PlacesTheMarksInACell) {
  const auto grid = StepGridGeometry::fitting(16 * 64, 16);
  const QRectF cell = grid.cell({2, 3});
  EXPECT_EQ(cell, QRectF(64 * 3 + 3, 44 * 2 + 4, 58, 36));
  EXPECT_EQ(StepGridGeometry::velocityBar(cell, 127), QRectF(200, 122, 48, 3));
  EXPECT_EQ(StepGridGeometry::dot(cell), QRectF(222, 106, 4, 4));
}

}  // namespace
}  // namespace velmora
