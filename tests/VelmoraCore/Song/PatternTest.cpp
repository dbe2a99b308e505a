#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "VelmoraCore/Song/Pattern.h"
#include "tests/support/Songs.h"

namespace velmora::testing {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

Pattern patternOf(double lengthBeats, std::initializer_list<Note> notes = {}) {
  return {.lengthBeats = lengthBeats, .notes = notes};
}

std::string place(const Note& one) {
  std::ostringstream text;
  text << int{one.pitch} << " at " << one.startBeat << " for " << one.durationBeats << " with "
       << int{one.velocity};
  return text.str();
}

TEST(Pattern, InsertsNotesOnTheGridLineBefore) {
  struct Row {
    int pitch, velocity;
    double start, duration, grid, length;
    const char* stored;  // empty: refused
  };
  const Row rows[] = {
      {60, 100, 0.49, 0.5, 0.25, 4, "60 at 0.25 for 0.5 with 100"},
      {60, 100, 3.75, 4, 0.25, 4, "60 at 3.75 for 0.25 with 100"},
      {-9, 0, -3, 0, 0.5, 4, "0 at 0 for 0.5 with 1"},
      {999, 999, 1e308, 1e308, 1, 4, "127 at 3 for 1 with 127"},
      {60, 100, 1e308, 1, 1e-3, 1, "60 at 0.999 for 0.001 with 100"},
      {60, 100, 0.5, 1, 1, 1, "60 at 0 for 1 with 100"},
      {60, 100, 0, 1, 2, 1, ""},
      {60, 100, 0, 1, 0, 4, ""},
      {60, 100, 0, 1, -1, 4, ""},
      {60, 100, 0, 1, infinity, 4, ""},
      {60, 100, infinity, 1, 1, 4, ""},
      {60, 100, 0, std::nan(""), 1, 4, ""},
      {60, 100, 0, 1, 1, infinity, ""},
      {60, 100, 9, 1, 1e-300, 4, ""},  // would start at the very end
  };
  for (const Row& row : rows) {
    Pattern pattern = patternOf(row.length);
    const auto id = pattern.insertNote(row.pitch, row.velocity, row.start, row.duration, row.grid);
    ASSERT_EQ(pattern.notes.size(), id ? 1U : 0U);
    EXPECT_EQ(id ? place(pattern.notes[0]) : "", row.stored) << row.start << " " << row.grid;
    EXPECT_TRUE(!id || pattern.notes[0].id == *id);
  }
}

TEST(Pattern, EditsMoveWholeNotesAndResizeAtTheEnd) {
  struct Row {
    NoteEdit edit;
    double grid;
    const char* stored;
  };
  const char* const unchanged = "60 at 1 for 1 with 100";
  const Row rows[] = {
      {{.startBeat = 1.4}, 0.5, "60 at 1.5 for 1 with 100"},
      {{.startBeat = 0.75}, 0.5, "60 at 1 for 1 with 100"},  // halves go away from zero
      {{.startBeat = 9}, 0.5, "60 at 3 for 1 with 100"},
      {{.startBeat = -9}, 0.5, "60 at 0 for 1 with 100"},
      {{.startBeat = 9, .durationBeats = 2}, 0.5, "60 at 3.5 for 0.5 with 100"},
      {{.durationBeats = 9}, 0.5, "60 at 1 for 3 with 100"},
      {{.durationBeats = -1}, 0.25, "60 at 1 for 0.25 with 100"},
      {{}, 2, "60 at 1 for 2 with 100"},
      {{.startBeat = 3}, 4, "60 at 0 for 4 with 100"},
      {{.pitch = 300, .velocity = -5}, 0.5, "127 at 1 for 1 with 1"},
      {{.pitch = -1, .velocity = 128}, 0.5, "0 at 1 for 1 with 127"},
      {{.pitch = 61}, 5, unchanged},
      {{.pitch = 61}, 0, unchanged},
      {{.pitch = 61, .startBeat = infinity}, 1, unchanged},
      {{.pitch = 61, .durationBeats = std::nan("")}, 1, unchanged},
      {{.pitch = 61, .startBeat = 9, .durationBeats = 1}, 1e-300, unchanged},
  };
  for (const Row& row : rows) {
    Pattern pattern = patternOf(4, {note(60, 1, 1)});
    pattern.editNote(pattern.notes[0].id, row.edit, row.grid);
    EXPECT_EQ(place(pattern.notes[0]), row.stored);
  }
}

TEST(Pattern, RemovesEveryNoteWithTheID) {
  Pattern pattern = patternOf(4, {note(60, 0, 1), note(61, 1, 1)});
  pattern.notes.write()[1].id = pattern.notes[0].id;
  pattern.notes.write().push_back(note(62, 2, 1));
  pattern.removeNote(pattern.notes[0].id);
  ASSERT_EQ(pattern.notes.size(), 1U);
  EXPECT_EQ(pattern.notes[0].pitch, 62);
}

TEST(Pattern, CountsStepsUpwards) {
  const std::pair<double, int> rows[] = {{4, 16},        {1.1, 5},  {0.25, 1},     {16384, 65536},
                                         {1e300, 65536}, {5e-9, 1}, {infinity, 0}, {-1, 0}};
  for (const auto& [lengthBeats, steps] : rows) EXPECT_EQ(patternOf(lengthBeats).stepCount(), steps);
}

TEST(Pattern, TogglesWholeCells) {
  Pattern pattern = patternOf(1.1);
  pattern.toggleStep(DrumSound::snare, 4, 300);
  ASSERT_EQ(pattern.notes.size(), 1U);
  EXPECT_EQ(place(pattern.notes[0]), "38 at 1 for 0.1 with 127");
  for (const int step : {-1, 5, 1 << 30}) {
    pattern.toggleStep(DrumSound::snare, step, 100);
    pattern.setStepVelocity(DrumSound::snare, step, 100);
    EXPECT_EQ(pattern.stepVelocity(DrumSound::snare, step), std::nullopt);
  }
  EXPECT_EQ(pattern.notes.size(), 1U);

  pattern =
      patternOf(4, {note(36, 0.25, 1, 80), note(36, 0.49, 1, 90), note(36, 0.5, 1, 99), note(37, 0.25, 1)});
  EXPECT_EQ(pattern.stepVelocity(DrumSound::kick, 1), 90);
  EXPECT_EQ(pattern.stepVelocity(DrumSound::kick, 0), std::nullopt);
  pattern.setStepVelocity(DrumSound::kick, 1, 0);
  pattern.setStepVelocity(DrumSound::kick, 0, 64);
  EXPECT_EQ(pattern.notes[0].velocity + pattern.notes[1].velocity, 2);
  EXPECT_EQ(pattern.notes[2].velocity, 99);
  pattern.toggleStep(DrumSound::kick, 1, 100);
  EXPECT_EQ(pattern.notes.size(), 2U);
  pattern.toggleStep(DrumSound::kick, 1, 0);
  EXPECT_EQ(place(pattern.notes.back()), "36 at 0.25 for 0.25 with 1");
}

}  // namespace
}  // namespace velmora::testing
