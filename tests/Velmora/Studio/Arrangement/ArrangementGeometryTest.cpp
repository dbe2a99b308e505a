#include <gtest/gtest.h>
#include <limits>
#include <rapidcheck/gtest.h>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Studio/Arrangement/AutoScroll.h"
#include "Velmora/Studio/Arrangement/TimelineViewport.h"

namespace velmora {
namespace {

using Geometry = ArrangementGeometry;

TEST(ArrangementGeometryTest, ZoomsBetweenTwelveAndOneHundredNinetyTwoPointsPerBeat) {
  const double noNumber = std::numeric_limits<double>::quiet_NaN();
  const struct {
    double zoom, magnification, points;
  } rows[] = {{1, 1, 48},    {4, 1, 192},     {4, 2, 192},       {2, 1.5, 144},
              {0.25, 1, 12}, {0.25, 0.1, 12}, {1, noNumber, 12}, {0.5, 0, 12}};
  for (const auto& row : rows)
    EXPECT_EQ(Geometry::pointsPerBeat(row.zoom, row.magnification), row.points) << row.zoom;
}

TEST(ArrangementGeometryTest, KeepsTwoThirdsOfAShortClipForMoving) {
  const struct {
    double x, lengthBeats, pointsPerBeat;
    bool isResize;
  } rows[] = {{78.1, 2, 48, true}, {78, 2, 48, false},  {95.9, 2, 48, true},  {8.1, 1, 12, true},
              {8, 1, 12, false},   {0.1, 1, 12, false}, {2, 0.25, 12, false}, {2.1, 0.25, 12, true}};
  for (const auto& row : rows)
    EXPECT_EQ(Geometry::isResize(480 + row.x, 480 / row.pointsPerBeat, row.lengthBeats, row.pointsPerBeat),
              row.isResize)
        << row.x;
}

TEST(ArrangementGeometryTest, FindsRowsAndFrames) {
  EXPECT_FALSE(Geometry::row(-0.1, 2));
  EXPECT_EQ(Geometry::row(63.9, 2), 0);
  EXPECT_EQ(Geometry::row(64, 2), 1);
  EXPECT_FALSE(Geometry::row(128, 2));
  EXPECT_EQ(Geometry::clipFrame(2, 3, 1, 48), QRectF(97.5, 70, 141, 52));
  EXPECT_EQ(Geometry::clipFrame(0, 0.5, 0, 12), QRectF(1.5, 6, 4, 52));
}

TEST(TimelineViewportTest, HasRoomBeyondTheSongAndForTheFoot) {
  TimelineViewport viewport{
      .viewportSize = {500, 100}, .timelineBeats = 16, .trackCount = 2, .footHeight = 50};
  EXPECT_EQ(viewport.contentSize(), QSizeF(48 * 32, 128));
  viewport.scrollTo({1e9, 1e9});
  EXPECT_EQ(viewport.scrollOffset, QPointF(48 * 32 - 500, 178 - 100));
  viewport.viewportSize = {5000, 1000};
  EXPECT_EQ(viewport.contentSize(), QSizeF(5000, 1000));
  viewport.scrollTo({10, 10});
  EXPECT_EQ(viewport.scrollOffset, QPointF(0, 0));
}

RC_GTEST_PROP(TimelineViewportTest, keepsTheBeatUnderThePointerWhileItZooms, ()) {
  TimelineViewport viewport{.viewportSize = {800, 200}, .timelineBeats = 16384, .trackCount = 4};
  viewport.scrollTo({*rc::gen::inRange(20000, 60000) / 1.0, 0});
  const double anchor = *rc::gen::inRange(0, 800);
  const auto beat = [&] { return (viewport.scrollOffset.x() + anchor) / viewport.pointsPerBeat(); };
  const double before = beat();
  viewport.magnify(*rc::gen::inRange(10, 300) / 100.0, anchor);
  RC_ASSERT(std::abs(beat() - before) * viewport.pointsPerBeat() <= 0.51);
  viewport.endMagnification(anchor);
  RC_ASSERT(viewport.magnification == 1);
  RC_ASSERT(viewport.zoom >= 0.25 && viewport.zoom <= 4);
}

TEST(AutoScrollTest, GetsFasterBeyondTheEdges) {
  EXPECT_EQ(autoScrollStep({100, 100}, {400, 200}), QPointF(0, 0));
  EXPECT_EQ(autoScrollStep({396, 4}, {400, 200}), QPointF(4, -4));
  EXPECT_EQ(autoScrollStep({-900, 900}, {400, 200}), QPointF(-24, 24));
}

}  // namespace
}  // namespace velmora
