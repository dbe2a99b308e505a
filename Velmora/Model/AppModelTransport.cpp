#include <algorithm>
#include <cmath>

#include "Velmora/Model/AppModelEdits.h"

namespace velmora {

void AppModel::playheadJumped() { playheadRevision.set(playheadRevision() + 1); }

void AppModel::play() {
  if (!isPlaying()) telemetry_.record(TelemetryEvent::playbackStarted);
  transport_.play();
  isPlaying.set(true);
}

void AppModel::pause() {
  if (isPlaying()) stop();
}

void AppModel::togglePlay() { isPlaying() ? pause() : play(); }

/// While a take is recorded it ends the take, and with it the transport.
void AppModel::stop() {
  if (isRecording()) {
    stopRecording(true);
    return;
  }
  transport_.stop();
  isPlaying.set(false);
  playheadJumped();
}

void AppModel::returnToStart() {
  if (isRecording()) return;
  const bool startsAtLoop = mode() == PlaybackMode::song && song().loop;
  transport_.seek(startsAtLoop ? song().loop->startBeat : 0);
  playheadJumped();
}

void AppModel::seek(double beat) {
  if (isRecording() || !std::isfinite(beat)) return;
  transport_.seek(std::max(beat, 0.0));
  playheadJumped();
}

void AppModel::setMode(PlaybackMode newMode) {
  if (isRecording() || newMode == mode()) return;
  mode.set(newMode);
  transport_.setMode(newMode);
  playheadJumped();
  commit();
}

void AppModel::setBPM(double value) {
  if (isRecording() || isAudioBusy() || std::isnan(value)) return;
  const double bpm = std::clamp(std::round(value), 40.0, 300.0);
  if (bpm == song().bpm) return;
  transport_.setBPM(bpm);
  editSong([&](Song& edited) { edited.bpm = bpm; });
}

}  // namespace velmora
