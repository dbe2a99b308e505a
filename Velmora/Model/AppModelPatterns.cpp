#include <algorithm>

#include "Velmora/Model/AppModelEdits.h"

namespace velmora {

namespace {

constexpr int newVelocity = 100;

/// "Pattern n" with the lowest n from 1 up that no pattern of the track has.
std::string freePatternName(const Song& song, const UUID& trackID) {
  const std::vector<Pattern> patterns = song.patternsForTrack(trackID);
  for (int n = 1;; ++n) {
    std::string name = "Pattern " + std::to_string(n);
    const auto isTaken = [&](const Pattern& pattern) { return pattern.name == name; };
    if (std::none_of(patterns.begin(), patterns.end(), isTaken)) return name;
  }
}

}  // namespace

void AppModel::selectPattern(UUID patternID, UUID trackID) {
  selectedNoteID.set({});
  editSong([&](Song& edited) { edited.selectPattern(patternID, trackID); });
}

void AppModel::newPattern(UUID trackID) {
  const Track* track = song().track(trackID);
  if (!track || track->kind.isAudio()) return;
  editSong([&](Song& edited) {
    const Pattern added = edited.addPattern(trackID, freePatternName(edited, trackID));
    edited.selectPattern(added.id, trackID);
  });
}

void AppModel::duplicatePattern(UUID patternID) {
  Song edited = song();
  if (!edited.duplicatePattern(patternID)) return;
  song.set(std::move(edited));
  commit();
}

void AppModel::renamePattern(UUID patternID, std::string_view name) {
  editSong([&](Song& edited) { edited.renamePattern(patternID, name); });
}

void AppModel::toggleDrumStep(UUID patternID, DrumSound sound, int step) {
  editPattern(patternID, TrackFamily::drums,
              [&](Pattern& pattern) { pattern.toggleStep(sound, step, newVelocity); });
}

void AppModel::setDrumStepVelocity(UUID patternID, DrumSound sound, int step, int velocity) {
  editPattern(patternID, TrackFamily::drums,
              [&](Pattern& pattern) { pattern.setStepVelocity(sound, step, velocity); });
}

void AppModel::addMelodicNote(UUID patternID, int pitch, double start, double duration, double grid) {
  editPattern(patternID, TrackFamily::synth, [&](Pattern& pattern) {
    selectNote(pattern.insertNote(pitch, newVelocity, start, duration, grid));
  });
}

void AppModel::editMelodicPattern(UUID patternID, const std::function<void(Pattern&)>& edit) {
  editPattern(patternID, TrackFamily::synth, edit);
}

void AppModel::deleteSelectedNote() {
  const Pattern* pattern = selectedPattern();
  if (!pattern || !selectedNoteID()) return;
  const UUID noteID = *selectedNoteID();
  editMelodicPattern(pattern->id, [&](Pattern& edited) { edited.removeNote(noteID); });
  selectNote({});
}

}  // namespace velmora
