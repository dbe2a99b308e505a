#include "Velmora/Studio/Shell/WorkspaceLayout.h"

namespace velmora {

namespace {

/// A window's header and transport bar take some 110 points off its workspace, and a window of 900 by 500 is
/// to show both panes. The picker is offered from that window height on, so that its offer tells the height.
bool isSplit(const WorkspaceLayout::Situation& situation) {
  const bool isHigh =
      situation.showsWorkspacePicker || situation.size.height() >= WorkspaceLayout::splitHeight;
  return situation.editorVisible && isHigh && situation.size.width() >= WorkspaceLayout::splitWidth;
}

}  // namespace

WorkspaceLayout::WorkspaceLayout(const Situation& situation) {
  if (situation.workspace == Workspace::mixer) {
    mixer = QRect({}, situation.size);
  } else if (isSplit(situation)) {
    split(situation);
  } else {
    single(situation);
  }
}

void WorkspaceLayout::split(const Situation& situation) {
  const auto [width, height] = situation.size;
  const int editorTop =
      height - qRound(editorHeight(height, situation.editorFraction, situation.resizeOffset));
  editor = QRect(0, editorTop, width, height - editorTop);
  handle = QRect(0, editorTop - handleHeight, width, handleHeight);
  arrangement = QRect(0, 0, width, handle.top());
}

void WorkspaceLayout::single(const Situation& situation) {
  QRect rest({}, situation.size);
  if (situation.showsWorkspacePicker && rest.width() >= pickerWidth) {
    picker = QRect(0, 0, rest.width(), pickerHeight);
    rest.setTop(pickerHeight);
  }
  (situation.workspace == Workspace::pattern ? editor : arrangement) = rest;
}

double WorkspaceLayout::editorHeight(double height, double editorFraction, double resizeOffset) {
  const double shared = height - handleHeight;
  return std::min(std::max(shared * editorFraction - resizeOffset, 220.0), shared - 140);
}

double WorkspaceLayout::draggedFraction(double height, double editorFraction, double translation) {
  return editorHeight(height, editorFraction, translation) / (height - handleHeight);
}

}  // namespace velmora
