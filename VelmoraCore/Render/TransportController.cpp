#include "VelmoraCore/Render/TransportController.h"

#include <algorithm>

#include "VelmoraCore/Render/BeatMath.h"
#include "VelmoraCore/Song/Limits.h"

namespace velmora {

std::string_view storedValue(PlaybackMode mode) { return mode == PlaybackMode::pattern ? "pattern" : "song"; }

std::optional<PlaybackMode> playbackMode(std::string_view storedValue) {
  if (storedValue == "pattern") return PlaybackMode::pattern;
  if (storedValue == "song") return PlaybackMode::song;
  return {};
}

TransportController::TransportController(const TransportState& state)
    : state_(state), playhead_(state.anchorBeat), renderedBeat_(state.anchorBeat) {}

TransportState TransportController::state() const noexcept {
  const std::lock_guard guard(stateLock_);
  return state_;
}

void TransportController::play() noexcept {
  const std::lock_guard guard(stateLock_);
  if (state_.isPlaying) return;
  state_.isPlaying = true;
  state_.anchorSampleTime.reset();
}

void TransportController::stop() noexcept {
  const double rendered = renderedBeat();
  {
    const std::lock_guard guard(stateLock_);
    const bool wasPlaying = state_.isPlaying;
    state_.isPlaying = false;
    state_.anchorBeat = wasPlaying ? rendered : 0;
    state_.anchorSampleTime.reset();
    if (wasPlaying) return;
  }
  moveTo(0);
}

void TransportController::togglePlay() noexcept {
  if (state().isPlaying) {
    stop();
  } else {
    play();
  }
}

void TransportController::seek(double beat) noexcept {
  update([beat](TransportState& state) {
    state.anchorBeat = beat;
    state.anchorSampleTime.reset();
  });
  moveTo(beat);
}

void TransportController::setBPM(double bpm) noexcept {
  const double tempo = std::clamp(bpm, limits::lowestBPM, limits::highestBPM);
  const double pivot = renderedBeat();
  update([tempo, pivot](TransportState& state) {
    state.bpm = tempo;
    state.anchorBeat = pivot;
    state.anchorSampleTime.reset();
  });
}

void TransportController::setMode(PlaybackMode mode) noexcept {
  update([mode](TransportState& state) {
    state.mode = mode;
    state.anchorBeat = 0;
    state.anchorSampleTime.reset();
  });
  moveTo(0);
}

void TransportController::setLoop(std::optional<LoopRange> loop) noexcept {
  update([&loop](TransportState& state) { state.loop = loop; });
}

void TransportController::moveTo(double beat) noexcept {
  renderedBeat_.store(beat, std::memory_order_relaxed);
  playhead_.store(beat, std::memory_order_relaxed);
}

RenderTiming TransportController::timing(double atSampleTime, int frameCount, double sampleRate) noexcept {
  RenderTiming timing;
  const double rendered = renderedBeat();
  {
    const std::lock_guard guard(stateLock_);
    timing.isPlaying = state_.isPlaying;
    timing.beatsPerFrame = BeatMath::beatsPerFrame(state_.bpm, sampleRate);
    timing.startBeat = state_.anchorBeat;
    timing.mode = state_.mode;
    if (state_.mode == PlaybackMode::song) timing.loop = state_.loop;
    if (state_.isPlaying) {
      if (!state_.anchorSampleTime) {
        state_.anchorSampleTime = atSampleTime;
      } else if (*state_.anchorSampleTime <= atSampleTime) {
        timing.startBeat += timing.beatsPerFrame * (atSampleTime - *state_.anchorSampleTime);
      } else {  // the host's clock was reset
        timing.startBeat = rendered;
        state_.anchorBeat = rendered;
        state_.anchorSampleTime = atSampleTime;
      }
    }
  }
  const double end =
      timing.isPlaying ? timing.startBeat + timing.beatsPerFrame * frameCount : timing.startBeat;
  renderedBeat_.store(end, std::memory_order_relaxed);
  return timing;
}

}  // namespace velmora
