#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <optional>

#include "Velmora/Studio/TransportBar/SongPosition.h"
#include "Velmora/Studio/TransportBar/TempoDrag.h"
#include "Velmora/Studio/TransportBar/TempoText.h"
#include "Velmora/Studio/TransportBar/TransportLayout.h"

namespace velmora {
namespace {

TEST(SongPositionTest, CountsBarsBeatsAndStepsFromOne) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const struct {
    double beat;
    const char* text;
  } rows[] = {
      {0, "001.1.1"},
      {0.249, "001.1.1"},
      {0.25, "001.1.2"},
      {3.75, "001.4.4"},
      {3.999999, "001.4.4"},
      {4, "002.1.1"},
      {10.5, "003.3.3"},
      {3995.9, "999.4.4"},
      {3996, "1000.1.1"},
      {-1, "001.1.1"},
      {-infinity, "001.1.1"},
      {infinity, "001.1.1"},
      {std::nan(""), "001.1.1"},
      {1e300, "250000000000001.1.1"},
  };
  for (const auto& row : rows) EXPECT_EQ(SongPosition::at(row.beat).text(), row.text) << row.beat;
  EXPECT_EQ(SongPosition::at(3.75).spoken(), "Bar 1, beat 4, step 4");
}

TEST(TempoTextTest, TakesWhatIsWhollyANumber) {
  const struct {
    const char* text;
    std::optional<double> bpm;
  } rows[] = {
      {"128", 128},    {"120,5", 120.5}, {"120.5", 120.5}, {" 90 \t", 90},  {"1e2", 100}, {"-3", -3},
      {"", {}},        {"  ", {}},       {"abc", {}},      {"120 bpm", {}}, {"12 0", {}}, {"1,2,3", {}},
      {"1.000,5", {}}, {"nan", {}},      {"inf", {}},      {"1e999", {}},   {"0x50", {}},
  };
  for (const auto& row : rows) EXPECT_EQ(TempoText::parsed(row.text), row.bpm) << '"' << row.text << '"';
  EXPECT_EQ(TempoText::shown(128), "128");
}

TEST(TempoDragTest, MovesByOneEveryEightPointsFromTheStart) {
  TempoDrag drag({10, 10});
  EXPECT_EQ(drag.moved({12, 12}, 120), std::nullopt);
  EXPECT_FALSE(drag.isDragging());
  EXPECT_EQ(drag.moved({10, 6}, 120), 121);  // half a step rounds away from none
  const struct {
    double y;
    double bpm;
  } rows[] = {{7, 120}, {2, 121}, {-2, 122}, {13, 120}, {14, 119}, {-1590, 320}, {10, 120}};
  for (const auto& row : rows) EXPECT_EQ(drag.moved({10, row.y}, 300), row.bpm) << row.y;
}

constexpr TransportWidths usual{.position = 126, .tempo = 54, .engine = 64};

/// From the start of reading to its end.
std::vector<QRect> inOrder(const TransportLayout& layout) {
  return {layout.returnToStart, layout.stop,  layout.play, layout.record,
          layout.position,      layout.tempo, layout.mode, layout.engine};
}

TEST(TransportLayoutTest, NothingOverlapsAtAnyWidth) {
  for (const auto sizeClass : {SizeClass::compact, SizeClass::regular}) {
    const int oneRow = TransportLayout::oneRowWidth(sizeClass, usual);
    for (int width = TransportLayout::twoLinesWidth(sizeClass, usual); width < 1400; ++width) {
      const TransportLayout layout = TransportLayout::fit(width, sizeClass, usual);
      std::vector<QRect> places = inOrder(layout);
      places.insert(places.end(), layout.dividers.begin(), layout.dividers.end());
      const QRect bar(0, 0, width, layout.height);
      for (std::size_t i = 0; i < places.size(); ++i) {
        ASSERT_TRUE(bar.contains(places[i])) << width;
        for (std::size_t j = 0; j < i; ++j) ASSERT_FALSE(places[i].intersects(places[j])) << width;
      }
      ASSERT_EQ(layout.dividers.empty(), width < oneRow) << width;
    }
  }
}

TEST(TransportLayoutTest, StandsAsMeasured) {
  const TransportLayout regular = TransportLayout::fit(1280, SizeClass::regular, usual);
  EXPECT_EQ(regular.height, 64);
  EXPECT_EQ(regular.returnToStart, QRect(16, 10, 44, 44));
  EXPECT_EQ(regular.play, QRect(128, 10, 52, 44));
  EXPECT_EQ(regular.dividers,
            (std::vector{QRect(248, 14, 1, 36), QRect(481, 14, 1, 36), QRect(1187, 14, 1, 36)}));
  EXPECT_EQ(regular.position.width(), 128);
  EXPECT_EQ(regular.tempo.width(), 68);
  EXPECT_EQ(regular.mode, QRect(494, 16, 180, 32));
  EXPECT_EQ(regular.engine.right() + 1, 1280 - 16);

  const TransportWidths small{.position = 93, .tempo = 40, .engine = 8};
  const TransportLayout compact = TransportLayout::fit(620, SizeClass::compact, small);
  EXPECT_EQ(compact.height, 56);
  EXPECT_EQ(compact.dividers, (std::vector{QRect(216, 14, 1, 28), QRect(383, 14, 1, 28)}));
  EXPECT_EQ(compact.mode.width(), 150);

  const TransportLayout lines = TransportLayout::fit(540, SizeClass::compact, small);
  EXPECT_EQ(lines.height, 8 + 44 + 6 + 32 + 8);
  EXPECT_EQ(lines.returnToStart.left(), 540 - 1 - lines.tempo.right());
}

}  // namespace
}  // namespace velmora
