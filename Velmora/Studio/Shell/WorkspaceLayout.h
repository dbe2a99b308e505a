#pragma once

#include <QRect>
#include <QSize>
#include <algorithm>

#include "Velmora/Model/Workspace.h"

namespace velmora {

/// Where the parts of the workspace stand; an empty rectangle is not shown.
struct WorkspaceLayout {
  static constexpr int splitWidth = 900;
  static constexpr int splitHeight = 500;
  static constexpr int pickerWidth = 700;  ///< from here on the picker fits
  static constexpr int pickerHeight = 48;  ///< with its padding
  static constexpr int handleHeight = 44;

  struct Situation {
    QSize size;
    Workspace workspace = Workspace::arrangement;
    bool editorVisible = true;
    bool showsWorkspacePicker = true;
    double editorFraction = 0.55;
    double resizeOffset = 0;  ///< of the running drag, in points downwards
  };
  explicit WorkspaceLayout(const Situation& situation);

  QRect mixer;
  QRect picker;
  QRect arrangement;
  QRect handle;
  QRect editor;

  /// The editor's height in a split workspace of this height: at least 220, but the arrangement keeps 140.
  static double editorHeight(double height, double editorFraction, double resizeOffset);
  /// The fraction that a drag by `translation` points downwards leaves; bounded in points, not as a fraction.
  static double draggedFraction(double height, double editorFraction, double translation);

  /// What keys and screen readers may set, and their step; bounded as a fraction.
  static constexpr double lowestAdjusted = 0.25;
  static constexpr double highestAdjusted = 0.8;
  static constexpr double adjustmentStep = 0.05;
  static constexpr double adjustedFraction(double wanted) {
    return std::clamp(wanted, lowestAdjusted, highestAdjusted);
  }

 private:
  void split(const Situation& situation);
  void single(const Situation& situation);
};

}  // namespace velmora
