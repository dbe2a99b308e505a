#include "Velmora/Model/AppModelEdits.h"

namespace velmora {

void AppModel::placePattern(std::optional<UUID> trackID, double beat) {
  const Track* track = trackID ? song().track(*trackID) : selectedTrack();
  if (!track || !track->selectedPatternID) return;
  Song edited = song();
  const std::optional<UUID> placed = edited.placePattern(*track->selectedPatternID, beat);
  song.set(std::move(edited));
  selectClip(placed);
  commit();
}

/// The clip's id is stored last: a change of the track clears it.
void AppModel::selectClip(std::optional<UUID> clipID) {
  selectNote({});
  const Clip* clip = clipID ? song().clip(*clipID) : nullptr;
  if (clip) selectTrack(clip->trackID);
  selectedClipID.set(clipID);
}

void AppModel::changeClip(UUID clipID, const ClipEdit& edit) {
  Song edited = song();
  edited.editClip(clipID, edit);
  song.set(std::move(edited));
  selectClip(clipID);
  commit();
}

void AppModel::deleteSelectedClip() {
  if (!selectedClipID()) return;
  const UUID clipID = *selectedClipID();
  selectedClipID.set({});
  editSong([&](Song& edited) { edited.removeClip(clipID); });
}

void AppModel::deleteSelection() { selectedNoteID() ? deleteSelectedNote() : deleteSelectedClip(); }

void AppModel::setLoop(double startBeat, double endBeat) {
  if (isRecording()) return;
  editSong([&](Song& edited) { edited.setLoop(startBeat, endBeat); });
}

void AppModel::clearLoop() {
  if (isRecording()) return;
  editSong([&](Song& edited) { edited.loop.reset(); });
}

}  // namespace velmora
