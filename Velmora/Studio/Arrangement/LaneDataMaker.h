#pragma once

#include <memory>
#include <unordered_set>

#include "Velmora/Studio/Arrangement/LaneData.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// Builds the lanes of one song after another.
///
/// What the songs share isn't built again, and a lane that came out the same keeps its storage: an edit
/// elsewhere costs a few comparisons, and two results compare at once. Copies are cheap, too.
class LaneDataMaker {
 public:
  LaneDataMaker();

  /// Valid until the next call.
  const LaneData& make(const Song& song);

 private:
  struct Sources;

  bool hasSameSources(const Song& song) const;
  bool hasSameTracks(const Song& song) const;
  void makeLanes(const Song& song, const std::unordered_set<UUID>& changedTracks);

  Song last_;  // what the lanes and sources were made from
  std::shared_ptr<const Sources> sources_;
  LaneData data_;
};

}  // namespace velmora
