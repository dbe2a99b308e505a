#include "Velmora/Studio/Arrangement/LaneData.h"

#include <algorithm>

namespace velmora {

namespace {

int clipCountOf(const Lane& lane) { return static_cast<int>(lane.clips.size()); }

}  // namespace

int LaneData::clipCount() const { return numberOf({trackCount(), 0}); }

const ClipBox& LaneData::clip(const ClipPlace& place) const {
  return lane(place.row).clips[static_cast<std::size_t>(place.index)];
}

const ClipBox* LaneData::clipAt(int row, double beat) const {
  const std::vector<ClipBox>& clips = lane(row).clips.items();
  const auto found = std::find_if(clips.rbegin(), clips.rend(), [beat](const ClipBox& clip) {
    return clip.startBeat <= beat && beat < clip.endBeat();
  });
  return found == clips.rend() ? nullptr : &*found;
}

std::optional<int> LaneData::rowOf(const UUID& trackID) const {
  const Lane* found = findByID(lanes, trackID);
  return found ? std::optional(static_cast<int>(found - &lanes.front())) : std::nullopt;
}

std::optional<ClipPlace> LaneData::find(const UUID& clipID) const {
  for (int row = 0; row < trackCount(); ++row) {
    const auto& clips = lane(row).clips;
    if (const ClipBox* found = findByID(clips, clipID))
      return {{row, static_cast<int>(found - &clips.front())}};
  }
  return {};
}

std::optional<ClipPlace> LaneData::placeOf(int number) const {
  if (number < 0) return {};
  for (int row = 0; row < trackCount(); ++row) {
    if (number < clipCountOf(lane(row))) return {{row, number}};
    number -= clipCountOf(lane(row));
  }
  return {};
}

int LaneData::numberOf(const ClipPlace& place) const {
  int number = place.index;
  for (int row = 0; row < place.row; ++row) number += clipCountOf(lane(row));
  return number;
}

}  // namespace velmora
