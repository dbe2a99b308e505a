#pragma once

#include <QWidget>

#include "Velmora/Studio/Arrangement/ToolbarButton.h"

namespace velmora {

/// The buttons over the arrangement, left to right; the view connects them.
class ArrangementToolbar final : public QWidget {
 public:
  explicit ArrangementToolbar(QWidget* parent = nullptr);

  static constexpr int barHeight = 45;  ///< with the line below

  ToolbarButton editClips{"arrangement.editClips", "Edit Clips", {}};
  ToolbarButton placePattern{"arrangement.placePattern", "Place Pattern", "plus.rectangle"};
  ToolbarButton zoomOut{"arrangement.zoomOut", "Zoom Out", "minus.magnifyingglass"};
  ToolbarButton zoomIn{"arrangement.zoomIn", "Zoom In", "plus.magnifyingglass"};
  ToolbarButton loop{"arrangement.loop", "Loop", "repeat"};
  ToolbarButton deleteClip{"arrangement.deleteClip", "Delete Clip", "trash"};

  /// Leaves texts out, the last button's first, until the buttons fit.
  void fit(int width);
  int fittedWidth() const { return fittedWidth_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int fittedWidth_ = 0;
};

}  // namespace velmora
