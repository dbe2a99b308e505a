#pragma once

#include <QPixmap>
#include <array>

#include "Velmora/Studio/Arrangement/CanvasContent.h"
#include "Velmora/Studio/Arrangement/TimelineScale.h"

namespace velmora {

/// The ground of the lanes: bars, beats and the loop's band. They look the same all the way down, so that one
/// strip as high as a lane is drawn, and copied as long as the timeline stands still.
class LaneGround {
 public:
  /// Makes the strips for a view of this width, unless it has them.
  void prepare(const CanvasContent& content, int width, double pixelsPerPoint);

  const QPixmap& plainLane() const { return plain_; }
  const QPixmap& selectedLane() const { return selected_; }

 private:
  struct Key {
    LoopRange loop;
    double pointsPerBeat = 0;
    double scrollX = 0;
    int width = 0;
    double pixelsPerPoint = 0;

    bool operator==(const Key&) const = default;
  };

  QPixmap makeStrip(const QColor& veil) const;

  Key key_;
  QPixmap plain_;
  QPixmap selected_;
};

}  // namespace velmora
