#pragma once

#include <vector>

#include "Velmora/Studio/Arrangement/LaneData.h"

namespace velmora {

/// Finds the clips of a lane that lie in a stretch of the timeline without a look at all the others.
class LaneIndex {
 public:
  explicit LaneIndex(const SharedList<ClipBox>& clips);

  /// The numbers of the clips, in the order in which they are drawn.
  std::vector<int> overlapping(double startBeat, double endBeat) const;

 private:
  struct Entry {
    double startBeat;
    double endBeat;
    double latestEndBeat;  // of this and all entries before
    int index;
  };

  std::vector<Entry> byStart_;
};

}  // namespace velmora
