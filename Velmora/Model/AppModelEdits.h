#pragma once

#include <utility>

#include "Velmora/Model/AppModel.h"

namespace velmora {

// The three shapes of an edit. Each stores the changed document and commits it; without the record that it
// names it does neither.

template <class Edit>
void AppModel::editSong(const Edit& edit) {
  Song edited = song();
  edit(edited);
  song.set(std::move(edited));
  commit();
}

template <class Edit>
void AppModel::editTrack(const UUID& trackID, const Edit& edit) {
  const Track* found = song().track(trackID);
  if (!found) return;
  Track track = *found;
  edit(track);
  editSong([&](Song& edited) { edited.update(track); });
}

/// Only a pattern whose track is of the family; returns whether there was one.
template <class Edit>
bool AppModel::editPattern(const UUID& patternID, TrackFamily family, const Edit& edit) {
  const Pattern* found = song().pattern(patternID);
  const Track* track = found ? song().track(found->trackID) : nullptr;
  if (!track || track->kind.family() != family) return false;
  Pattern pattern = *found;
  edit(pattern);
  editSong([&](Song& edited) { edited.update(pattern); });
  return true;
}

}  // namespace velmora
