#include "Velmora/Studio/Arrangement/ClipDrag.h"

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"

namespace velmora {

namespace {

/// The track at a height, if it is of the same family as the lane's.
std::optional<UUID> acceptingTrack(const Song& song, const LaneData& lanes, int fromRow, double y) {
  const auto row = ArrangementGeometry::row(y, lanes.trackCount());
  if (!row) return {};
  const Track* from = song.track(lanes.lane(fromRow).id);
  const Track* to = song.track(lanes.lane(*row).id);
  return from && to && from->kind.family() == to->kind.family() ? std::optional(to->id) : std::nullopt;
}

}  // namespace

std::optional<ClipChange> ClipDrag::change(const Song& song, const LaneData& lanes,
                                           double pointsPerBeat) const {
  const auto row = ArrangementGeometry::row(start.y(), lanes.trackCount());
  const ClipBox* clip = row ? lanes.clipAt(*row, start.x() / pointsPerBeat) : nullptr;
  if (!clip) return {};
  const double beats = (current.x() - start.x()) / pointsPerBeat;
  if (ArrangementGeometry::isResize(start.x(), clip->startBeat, clip->lengthBeats, pointsPerBeat))
    return {{clip->id, {.lengthBeats = clip->lengthBeats + beats}}};
  return {
      {clip->id,
       {.startBeat = clip->startBeat + beats, .trackID = acceptingTrack(song, lanes, *row, current.y())}}};
}

Song ClipChange::previewed(Song song) const {
  song.editClip(clipID, {edit.startBeat, edit.lengthBeats, {}});
  const Clip* found = song.clip(clipID);
  if (!found || !edit.trackID) return song;
  Clip clip = *found;
  clip.trackID = *edit.trackID;
  song.update(clip);
  return song;
}

}  // namespace velmora
