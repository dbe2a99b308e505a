#pragma once

#include <QPointF>
#include <optional>

#include "Velmora/Studio/Arrangement/LaneData.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// What a drag is about to do to a clip.
struct ClipChange {
  UUID clipID;
  ClipEdit edit;

  /// The song as it will be, but for one thing: a clip on another lane still plays its old pattern.
  Song previewed(Song song) const;
};

/// A drag over the canvas, in points of its content. Where it began tells what it does.
struct ClipDrag {
  QPointF start;
  QPointF current;

  /// Empty for a drag that began on no clip. `lanes` are the song's.
  std::optional<ClipChange> change(const Song& song, const LaneData& lanes, double pointsPerBeat) const;
};

}  // namespace velmora
