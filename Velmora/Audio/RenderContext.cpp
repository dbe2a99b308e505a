#include "Velmora/Audio/RenderContext.h"

#include <algorithm>
#include <utility>

#include "Platform/Audio/Samples.h"
#include "VelmoraCore/Render/AudioClipRenderer.h"
#include "VelmoraCore/Render/BeatMath.h"

namespace velmora {

RenderContext::RenderContext(std::unique_ptr<TrackRenderer> renderer,
                             std::unique_ptr<LiveNoteRenderer> audition, TransportController& transport,
                             SnapshotStore& store, double sampleRate)
    : renderer_(std::move(renderer)),
      audition_(std::move(audition)),
      transport_(transport),
      store_(store),
      sampleRate_(sampleRate) {}

void RenderContext::render(double sampleTime, int frameCount, std::span<float> buffer) noexcept {
  if (frameCount < 1 || static_cast<std::size_t>(frameCount) > buffer.size()) return;
  const auto block = buffer.first(static_cast<std::size_t>(frameCount));
  if (frameCount > maxFrames) return std::fill(block.begin(), block.end(), 0.0F);

  const RenderTiming timing = transport_.timing(sampleTime, frameCount, sampleRate_);
  const auto snapshot = store_.current();
  const TrackRenderSnapshot* track = snapshot->trackSnapshot(renderer_->trackID());
  renderer_->render(block, timing, *snapshot);
  audition_->render(block);
  AudioClipRenderer::mix(block, timing, track, sampleRate_, snapshot->songLengthBeats());
  if (!track || !track->isAudible) std::fill(block.begin(), block.end(), 0.0F);
  peakMeter_.store(platform::peak(block.data(), frameCount));
  if (publishesPlayhead()) publishPlayhead(timing, frameCount, *snapshot, track);
}

void RenderContext::publishPlayhead(const RenderTiming& timing, int frameCount,
                                    const RenderSnapshot& snapshot,
                                    const TrackRenderSnapshot* track) noexcept {
  const double end =
      timing.isPlaying ? timing.startBeat + timing.beatsPerFrame * frameCount : timing.startBeat;
  if (timing.mode == PlaybackMode::song) {
    return transport_.publish(
        BeatMath::wrap(end, timing.loop.value_or(LoopRange{0, snapshot.songLengthBeats()})));
  }
  const double length = track ? track->patternLoopLength.value_or(0) : 0;
  transport_.publish(length > 0 ? BeatMath::wrap(end, {0, length}) : 0);
}

}  // namespace velmora
