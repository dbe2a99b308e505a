#pragma once

#include <QString>
#include <optional>

#include "VelmoraCore/Song/SharedList.h"
#include "VelmoraCore/Song/Track.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// A clip as the canvas draws it.
struct ClipBox {
  UUID id;
  double startBeat = 0;
  double lengthBeats = 0;
  QString name;
  std::optional<double> tileLength;  ///< of the pattern; empty for audio

  double endBeat() const { return startBeat + lengthBeats; }
  bool operator==(const ClipBox&) const = default;
};

/// A track as the canvas draws it; later clips lie over earlier ones.
struct Lane {
  UUID id;
  TrackColor color = TrackColor::blue;
  SharedList<ClipBox> clips;

  bool operator==(const Lane&) const = default;
};

struct ClipPlace {
  int row = 0;
  int index = 0;  ///< in the lane
};

/// All that the canvas draws of a song: a value, cheap to copy and to compare.
struct LaneData {
  SharedList<Lane> lanes;

  int trackCount() const { return static_cast<int>(lanes.size()); }
  int clipCount() const;
  const Lane& lane(int row) const { return lanes[static_cast<std::size_t>(row)]; }
  const ClipBox& clip(const ClipPlace& place) const;

  /// The topmost clip at a beat; null without one.
  const ClipBox* clipAt(int row, double beat) const;
  std::optional<int> rowOf(const UUID& trackID) const;
  std::optional<ClipPlace> find(const UUID& clipID) const;

  // All clips in one row, lane after lane.
  std::optional<ClipPlace> placeOf(int number) const;
  int numberOf(const ClipPlace& place) const;

  bool operator==(const LaneData&) const = default;
};

}  // namespace velmora
