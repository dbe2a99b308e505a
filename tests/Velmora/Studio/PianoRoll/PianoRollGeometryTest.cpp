#include <gtest/gtest.h>

#include "Velmora/Studio/PianoRoll/NoteDrag.h"
#include "Velmora/Studio/PianoRoll/PianoRollGeometry.h"
#include "Velmora/Studio/PianoRoll/PianoRollZoom.h"
#include "Velmora/Studio/PianoRoll/PitchName.h"
#include "tests/support/Songs.h"

namespace velmora {
namespace {

using testing::note;

Pattern patternOf(std::initializer_list<Note> notes) {
  Pattern pattern;
  pattern.notes = notes;
  return pattern;
}

TEST(PianoRollGeometryTest, ShowsTwoOctavesUpToTheHighestPitch) {
  struct Row {
    int octave, lower, upper;
    const char *lowerName, *upperName;
  };
  for (const Row& row : {Row{0, 0, 23, "C-1", "B0"},
                         {4, 48, 71, "C3", "B4"},
                         {5, 60, 83, "C4", "B5"},
                         {9, 108, 127, "C8", "G9"},
                         {10, 120, 127, "C9", "G9"}}) {
    PianoRollGeometry roll;
    roll.showOctave(row.octave);
    EXPECT_EQ(roll.lowerPitch, row.lower);
    EXPECT_EQ(roll.upperPitch, row.upper);
    EXPECT_EQ(pitchName(roll.lowerPitch), row.lowerName);
    EXPECT_EQ(pitchName(roll.upperPitch), row.upperName);
    EXPECT_EQ(roll.contentSize({}), QSizeF(48 + 4 * 160 + 24, 18 * (row.upper - row.lower + 1)));
  }
  EXPECT_EQ(pitchName(61), "C♯4");
}

TEST(PianoRollGeometryTest, PlacesAndFindsNotes) {
  const PianoRollGeometry roll;
  const Pattern pattern = patternOf({note(71, 0, 1), note(60, 1, 0.5), note(60, 1.25, 1), note(72, 0, 4)});
  const auto& notes = pattern.notes;
  EXPECT_EQ(roll.noteRect(notes[1]), QRectF(208, 198, 80, 18));
  struct Row {
    QPointF point;
    const Note* found;
    bool isOnHandle;
  };
  for (const Row& row : {Row{{48, 0}, &notes[0], false},
                         {{207.9, 17.9}, &notes[0], true},
                         {{194, 9}, &notes[0], true},
                         {{193.9, 9}, &notes[0], false},
                         {{208, 9}, nullptr, false},
                         {{47.9, 9}, nullptr, false},
                         {{100, 18}, nullptr, false},
                         {{100, -1}, nullptr, false},
                         {{210, 200}, &notes[1], false},
                         {{260, 200}, &notes[2], false},
                         {{400, 200}, &notes[2], true}}) {
    const Note* found = roll.noteAt(row.point, pattern);
    EXPECT_EQ(found, row.found) << row.point.x() << " " << row.point.y();
    EXPECT_EQ(found && roll.isOnHandle(row.point, *found), row.isOnHandle) << row.point.x();
  }
  for (int pitch = 48; pitch <= 71; ++pitch) EXPECT_EQ(roll.pitch(roll.y(pitch) + 17.9), pitch);
  EXPECT_DOUBLE_EQ(roll.beat(roll.x(3.21)), 3.21);
}

TEST(PianoRollGeometryTest, KeepsTheCursorOnTheGridAndFindsWhatReachesIntoItsCell) {
  const PianoRollGeometry roll;
  const Pattern pattern = patternOf({note(60, 0.5, 0.5), note(60, 0.6, 0.1)});
  EXPECT_EQ(roll.moved({60, 3}, 100, 100, pattern), (PianoRollCell{71, 15}));
  EXPECT_EQ(roll.moved({60, 3}, -100, -100, pattern), (PianoRollCell{48, 0}));
  EXPECT_EQ((PianoRollCell{60, 2}.note(pattern)), &pattern.notes[1]);
  EXPECT_EQ((PianoRollCell{60, 3}.note(pattern)), &pattern.notes[0]);
  for (const PianoRollCell& cell : {PianoRollCell{60, 1}, {60, 4}, {61, 2}}) {
    EXPECT_EQ(cell.note(pattern), nullptr) << cell.pitch << " " << cell.step;
  }
}

TEST(NoteDragTest, EndsWhereItsOffsetSays) {
  const PianoRollGeometry roll;
  const Note start = note(60, 1, 0.5);
  const Pattern pattern = patternOf({start});
  struct Row {
    double grabbed;  // from the note's left edge
    QPointF offset;
    std::optional<int> pitch;
    std::optional<double> startBeat, durationBeats;
    QRectF shown;
  };
  for (const Row& row : {Row{65, {50, -27}, 62, 1.3125, {}, {258, 171, 80, 18}},
                         {65, {-400, 26}, 59, -1.5, {}, {-192, 224, 80, 18}},
                         {0, {0, 2000}, -51, 1, {}, {208, 2198, 80, 18}},
                         {66, {50, -27}, {}, {}, 0.75, {208, 198, 130, 18}},
                         {79, {59, 0}, {}, {}, 0.75, {208, 198, 139, 18}},
                         {79, {-300, 0}, {}, {}, -1.5, {208, 198, 40, 18}}}) {
    auto drag = NoteDrag::begin({208 + row.grabbed, 200}, pattern, roll);
    ASSERT_TRUE(drag);
    drag->offset = row.offset;
    const NoteEdit result = drag->result(start, roll);
    EXPECT_EQ(result.pitch, row.pitch) << row.grabbed;
    EXPECT_EQ(result.startBeat, row.startBeat) << row.grabbed;
    EXPECT_EQ(result.durationBeats, row.durationBeats) << row.grabbed;
    EXPECT_EQ(result.velocity, std::nullopt);
    EXPECT_EQ(drag->rect(start, roll), row.shown);
  }
  EXPECT_FALSE(NoteDrag::begin({100, 200}, pattern, roll));
}

TEST(PianoRollZoomTest, StaysWithinItsBounds) {
  PianoRollZoom zoom;
  zoom.in();
  EXPECT_FLOAT_EQ(zoom.zoom, 1.25F);
  for (int i = 0; i < 9; ++i) zoom.in();
  EXPECT_EQ(zoom.zoom, 3);
  for (int i = 0; i < 19; ++i) zoom.out();
  EXPECT_EQ(zoom.pointsPerBeat(), 80);
  zoom.magnification = 2;
  EXPECT_EQ(zoom.pointsPerBeat(), 160);
  zoom.magnification = 50;
  EXPECT_EQ(zoom.pointsPerBeat(), 480);
  zoom.endPinch();
  EXPECT_EQ(zoom.zoom, 3);
  EXPECT_EQ(zoom.magnification, 1);
}

}  // namespace
}  // namespace velmora
