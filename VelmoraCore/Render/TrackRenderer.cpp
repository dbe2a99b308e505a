#include "VelmoraCore/Render/TrackRenderer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "VelmoraCore/Render/BeatMath.h"

namespace velmora {

TrackRenderer::TrackRenderer(const UUID& trackID, std::unique_ptr<Instrument> instrument)
    : trackID_(trackID), instrument_(std::move(instrument)) {}

void TrackRenderer::prepare(double sampleRate, int maxFrames) {
  sampleRate_ = sampleRate;
  maxFrames_ = maxFrames;
  instrument_->prepare(sampleRate, maxFrames);
  wasPlaying_ = false;
  lastFingerprint_.reset();
  activePitches_.reset();
}

void TrackRenderer::render(std::span<float> into, const RenderTiming& timing,
                           const RenderSnapshot& snapshot) noexcept {
  if (into.empty()) return;
  std::fill(into.begin(), into.end(), 0.0F);
  const int frameCount = static_cast<int>(into.size());
  const TrackRenderSnapshot* track = snapshot.trackSnapshot(trackID_);
  if (track && timing.isPlaying) {
    renderEvents(*track, frameCount, timing, snapshot.songLengthBeats());
  } else if (wasPlaying_) {
    cutAllNotes();
    wasPlaying_ = false;
  }
  instrument_->render(into.data(), frameCount);  // in every case, so that tails ring out
  if (track && !track->isAudible) std::fill(into.begin(), into.end(), 0.0F);
}

void TrackRenderer::renderEvents(const TrackRenderSnapshot& track, int frameCount, const RenderTiming& timing,
                                 double songLengthBeats) noexcept {
  const double beatsPerFrame = timing.beatsPerFrame;
  if (!(beatsPerFrame > 0) || !std::isfinite(beatsPerFrame) || !std::isfinite(timing.startBeat)) {
    wasPlaying_ = false;
    return;
  }
  releaseAfterEdit(track);
  const double start = scanStart(timing);
  const double end = timing.startBeat + beatsPerFrame * frameCount;
  wasPlaying_ = true;
  lastMode_ = timing.mode;
  lastEndBeat_ = end;

  const auto cycle = cycleOf(track, timing, songLengthBeats);
  if (!cycle || cycle->range.endBeat - cycle->range.startBeat < beatsPerFrame) return;

  double position = BeatMath::wrap(start, cycle->range);
  for (double cursor = start; cursor < end;) {
    const double toCycleEnd = cycle->range.endBeat - position;
    const double length = std::min(toCycleEnd, end - cursor);
    playSegment(track, {cursor - start, position, position + length}, frameCount, beatsPerFrame);
    cursor += length;
    if (toCycleEnd > length) {
      position += length;
      continue;
    }
    position = cycle->range.startBeat;
    // An off event may lie exactly on the song's wrap, which the half-open scan never reaches.
    if (cycle->isSong) releaseActive(BeatMath::frameOffset(frameCount, cursor - start, beatsPerFrame));
  }
}

void TrackRenderer::releaseAfterEdit(const TrackRenderSnapshot& track) noexcept {
  if (lastFingerprint_ && *lastFingerprint_ != track.eventsFingerprint) releaseActive(0);
  lastFingerprint_ = track.eventsFingerprint;
}

/// The exact end of the last block where this one continues it, so that seams have neither gap nor overlap;
/// otherwise the block's own start, with all notes cut.
double TrackRenderer::scanStart(const RenderTiming& timing) noexcept {
  if (!wasPlaying_) return timing.startBeat;
  const bool continues =
      lastMode_ == timing.mode && std::abs(timing.startBeat - lastEndBeat_) <= timing.beatsPerFrame;
  if (continues) return lastEndBeat_;
  cutAllNotes();
  return timing.startBeat;
}

std::optional<TrackRenderer::Cycle> TrackRenderer::cycleOf(const TrackRenderSnapshot& track,
                                                           const RenderTiming& timing,
                                                           double songLengthBeats) noexcept {
  if (timing.mode == PlaybackMode::song)
    return Cycle{timing.loop.value_or(LoopRange{0, songLengthBeats}), true};
  if (!track.patternLoopLength || !(*track.patternLoopLength > 0)) return {};
  return Cycle{{0, *track.patternLoopLength}, false};
}

void TrackRenderer::playSegment(const TrackRenderSnapshot& track, const Segment& segment, int frameCount,
                                double beatsPerFrame) noexcept {
  const auto& events = track.events.items();
  auto event = std::lower_bound(events.begin(), events.end(), segment.start,
                                [](const NoteEvent& e, double beat) { return e.beat < beat; });
  for (; event != events.end() && event->beat < segment.end; ++event) {
    const double delta = segment.fromBlockStart + (event->beat - segment.start);
    play(*event, BeatMath::frameOffset(frameCount, delta, beatsPerFrame));
  }
}

void TrackRenderer::play(const NoteEvent& event, int atFrame) noexcept {
  if (event.isOn) {
    instrument_->noteOn(event.pitch, event.velocity, atFrame);
  } else {
    instrument_->noteOff(event.pitch, atFrame);
  }
  activePitches_[event.pitch] = event.isOn;
}

void TrackRenderer::releaseActive(int atFrame) noexcept {
  if (activePitches_.none()) return;
  for (std::size_t pitch = 0; pitch < activePitches_.size(); ++pitch) {
    if (activePitches_[pitch]) instrument_->noteOff(static_cast<std::uint8_t>(pitch), atFrame);
  }
  activePitches_.reset();
}

void TrackRenderer::cutAllNotes() noexcept {
  instrument_->allNotesOff();
  activePitches_.reset();
}

}  // namespace velmora
