#pragma once

#include <QWidget>

#include "Velmora/Theme/CommandButton.h"

namespace velmora {

/// The buttons over the arrangement, left to right; the view connects them.
class ArrangementToolbar final : public QWidget {
 public:
  explicit ArrangementToolbar(QWidget* parent = nullptr);

  static constexpr int barHeight = 45;  ///< with the line below

  CommandButton editClips{"Edit Clips"};
  CommandButton placePattern{"Place Pattern", "plus.rectangle"};
  CommandButton zoomOut{"Zoom Out", "minus.magnifyingglass"};
  CommandButton zoomIn{"Zoom In", "plus.magnifyingglass"};
  CommandButton loop{"Loop", "repeat"};
  CommandButton deleteClip{"Delete Clip", "trash"};

  /// Leaves texts out, the last button's first, until the buttons fit.
  void fit(int width);
  int fittedWidth() const { return fittedWidth_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int fittedWidth_ = 0;
};

}  // namespace velmora
