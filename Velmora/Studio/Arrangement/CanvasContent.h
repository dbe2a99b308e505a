#pragma once

#include <QPointF>
#include <optional>

#include "Velmora/Studio/Arrangement/LaneData.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// All that an arrangement canvas shows, and where it stands.
struct CanvasContent {
  LaneData data;
  std::optional<UUID> selectedTrackID;
  LoopRange loop;
  std::optional<UUID> selectedClipID;
  double pointsPerBeat = 48;
  QPointF scrollOffset;  ///< in whole points

  bool operator==(const CanvasContent&) const = default;
};

}  // namespace velmora
