#include "Velmora/Studio/Arrangement/LaneIndex.h"

#include <algorithm>

namespace velmora {

LaneIndex::LaneIndex(const SharedList<ClipBox>& clips) {
  byStart_.reserve(clips.size());
  for (const ClipBox& clip : clips)
    byStart_.push_back({clip.startBeat, clip.endBeat(), 0, static_cast<int>(byStart_.size())});
  std::ranges::stable_sort(byStart_, {}, &Entry::startBeat);
  double latest = 0;
  for (Entry& entry : byStart_) entry.latestEndBeat = latest = std::max(latest, entry.endBeat);
}

std::vector<int> LaneIndex::overlapping(double startBeat, double endBeat) const {
  std::vector<int> found;
  auto entry = std::ranges::lower_bound(byStart_, endBeat, {}, &Entry::startBeat);
  while (entry != byStart_.begin() && std::prev(entry)->latestEndBeat > startBeat) {
    --entry;
    if (entry->endBeat > startBeat) found.push_back(entry->index);
  }
  std::ranges::sort(found);
  return found;
}

}  // namespace velmora
