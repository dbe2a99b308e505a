#include <algorithm>
#include <cmath>

#include "Velmora/Model/AppModelEdits.h"

namespace velmora {

namespace {

bool isMix(float FXSettings::*field) {
  return field == &FXSettings::delayMix || field == &FXSettings::reverbMix;
}

}  // namespace

void AppModel::addTrack(TrackKind kind) {
  Song edited = song();
  const UUID added = edited.addTrack(kind).id;
  song.set(std::move(edited));
  selectTrack(added);
  commit();
  engine_.sync(song());
}

void AppModel::deleteTrack(UUID trackID) {
  const bool isBeingRecorded = recordingContext() && recordingContext()->trackID == trackID;
  if (isBeingRecorded || !song().track(trackID)) return;
  Song edited = song();
  edited.removeTrack(trackID);
  song.set(std::move(edited));
  if (selectedTrackID() == trackID)
    selectTrack(song().tracks.empty() ? std::nullopt : std::optional(song().tracks.front().id));
  commit();
  engine_.sync(song());
}

void AppModel::toggleMute(UUID trackID) {
  editTrack(trackID, [](Track& track) { track.isMuted = !track.isMuted; });
}

void AppModel::toggleSolo(UUID trackID) {
  editTrack(trackID, [](Track& track) { track.isSoloed = !track.isSoloed; });
}

void AppModel::setTrackVolume(UUID trackID, float volume) {
  if (std::isnan(volume)) return;
  editTrack(trackID, [&](Track& track) { track.volume = std::clamp(volume, 0.0F, 1.0F); });
}

void AppModel::setTrackPan(UUID trackID, float pan) {
  if (std::isnan(pan)) return;
  editTrack(trackID, [&](Track& track) { track.pan = std::clamp(pan, -1.0F, 1.0F); });
}

void AppModel::setTrackEffect(float FXSettings::*field, UUID trackID, float value) {
  if (!std::isfinite(value)) return;
  const float clamped = isMix(field) ? std::clamp(value, 0.0F, 1.0F) : std::clamp(value, -12.0F, 12.0F);
  editTrack(trackID, [&](Track& track) { track.fx.*field = clamped; });
}

void AppModel::setMasterVolume(float volume) {
  if (!std::isfinite(volume)) return;
  editSong([&](Song& edited) { edited.masterVolume = std::clamp(volume, 0.0F, 1.0F); });
}

void AppModel::setSynthPreset(SynthPreset preset, UUID trackID) {
  const Track* track = song().track(trackID);
  if (!track || !track->kind.isSynth()) return;
  engine_.releaseAuditionKeys();
  editTrack(trackID, [&](Track& edited) { edited.kind = TrackKind::synth(preset); });
  engine_.sync(song());
}

}  // namespace velmora
