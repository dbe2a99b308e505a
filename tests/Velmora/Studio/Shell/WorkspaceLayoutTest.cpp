#include <gtest/gtest.h>

#include "Velmora/Studio/Shell/WorkspaceLayout.h"

namespace velmora {
namespace {

std::string shown(const WorkspaceLayout::Situation& situation) {
  const WorkspaceLayout layout(situation);
  std::string text;
  const auto note = [&](const QRect& rect, const char* name) {
    if (rect.isEmpty()) return;
    text += std::string(text.empty() ? "" : " ") + name;
    EXPECT_TRUE(QRect({}, situation.size).contains(rect)) << name;
  };
  note(layout.mixer, "mixer");
  note(layout.picker, "picker");
  note(layout.arrangement, "arrangement");
  note(layout.handle, "handle");
  note(layout.editor, "editor");
  return text;
}

TEST(WorkspaceLayoutTest, ShowsWhatFits) {
  using enum Workspace;
  const std::pair<WorkspaceLayout::Situation, const char*> rows[] = {
      {{{900, 500}, arrangement}, "arrangement handle editor"},
      {{{900, 390}, pattern}, "arrangement handle editor"},  // of a window 500 high
      {{{1280, 700}, mixer}, "mixer"},
      {{{900, 390}, arrangement, true, false}, "arrangement"},
      {{{899, 700}, arrangement}, "picker arrangement"},
      {{{1280, 700}, pattern, false}, "picker editor"},
      {{{1280, 700}, arrangement, false}, "picker arrangement"},
      {{{700, 700}, pattern}, "picker editor"},
      {{{699, 700}, pattern}, "editor"},
      {{{800, 400}, arrangement, true, false}, "arrangement"},
  };
  for (const auto& [situation, expected] : rows) EXPECT_EQ(shown(situation), expected);
}

TEST(WorkspaceLayoutTest, SplitsTheHeightWithoutGaps) {
  const WorkspaceLayout layout({.size = {1000, 644}, .editorFraction = 0.5, .resizeOffset = -20});
  EXPECT_EQ(layout.editor, QRect(0, 324, 1000, 320));
  EXPECT_EQ(layout.handle, QRect(0, 280, 1000, 44));
  EXPECT_EQ(layout.arrangement, QRect(0, 0, 1000, 280));
}

TEST(WorkspaceLayoutTest, BoundsADragInPointsAndAnAdjustmentAsAFraction) {
  struct Row {
    double height, fraction, offset, editorHeight;
  };
  constexpr Row rows[] = {
      {500, 0.55, 0, 250.8},    {500, 0.55, 100, 220}, {500, 0.55, -200, 316}, {544, 0.9, 0, 360},
      {1044, 0.55, -50, 600.0}, {300, 0.55, 0, 116},  // the arrangement's 140 win over the editor's 220
  };
  for (const Row& row : rows) {
    EXPECT_DOUBLE_EQ(WorkspaceLayout::editorHeight(row.height, row.fraction, row.offset), row.editorHeight);
    EXPECT_DOUBLE_EQ(WorkspaceLayout::draggedFraction(row.height, row.fraction, row.offset),
                     row.editorHeight / (row.height - 44));
  }
  EXPECT_GT(WorkspaceLayout::draggedFraction(2044, 0.55, -2000), WorkspaceLayout::highestAdjusted);
  EXPECT_EQ(WorkspaceLayout::adjustedFraction(0.9 + 0.05), 0.8);
  EXPECT_EQ(WorkspaceLayout::adjustedFraction(0.2), 0.25);
}

}  // namespace
}  // namespace velmora
