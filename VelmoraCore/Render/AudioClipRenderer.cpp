#include "VelmoraCore/Render/AudioClipRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "VelmoraCore/Render/BeatMath.h"

namespace velmora {

namespace {

bool canPlay(const RenderTiming& timing, const TrackRenderSnapshot* track, double outputSampleRate) noexcept {
  return timing.isPlaying && timing.mode == PlaybackMode::song && std::isfinite(timing.startBeat) &&
         std::isfinite(timing.beatsPerFrame) && timing.beatsPerFrame > 0 && outputSampleRate > 0 && track &&
         track->isAudible;
}

/// The sample at a fractional position by linear interpolation; the last one is held.
float interpolated(const std::vector<float>& samples, double position) noexcept {
  const auto index = static_cast<std::size_t>(position);
  const std::size_t next = std::min(samples.size() - 1, index + 1);
  const auto fraction = static_cast<float>(position - static_cast<double>(index));
  return (1 - fraction) * samples[index] + fraction * samples[next];
}

/// Whether any frame of the block may lie in the clip. A block that wraps is not decided here.
bool mayOverlap(const AudioRenderClip& clip, const RenderTiming& timing, std::size_t frameCount,
                LoopRange cycle) noexcept {
  const double first = BeatMath::wrap(timing.startBeat, cycle);
  const double last = first + timing.beatsPerFrame * static_cast<double>(frameCount);
  const double margin = timing.beatsPerFrame;
  const bool wraps = last + margin >= cycle.endBeat;
  return wraps || (clip.startBeat <= last + margin && clip.startBeat + clip.lengthBeats >= first - margin);
}

void mixClip(std::span<float> into, const RenderTiming& timing, const AudioRenderClip& clip, LoopRange cycle,
             double outputSampleRate) noexcept {
  const auto& samples = clip.sample->samples;
  const double framesPerBeat = clip.sample->sampleRate / outputSampleRate / timing.beatsPerFrame;
  if (samples.empty() || !(framesPerBeat > 0) || !std::isfinite(framesPerBeat)) return;
  if (!mayOverlap(clip, timing, into.size(), cycle)) return;
  const auto length = static_cast<double>(samples.size());
  for (std::size_t frame = 0; frame < into.size(); ++frame) {
    const double beat = timing.startBeat + timing.beatsPerFrame * static_cast<double>(frame);
    const double inClip = BeatMath::wrap(beat, cycle) - clip.startBeat;
    if (inClip < 0 || inClip >= clip.lengthBeats) continue;
    const double position = framesPerBeat * inClip;
    if (position >= 0 && position < length) into[frame] += interpolated(samples, position);
  }
}

}  // namespace

void AudioClipRenderer::mix(std::span<float> into, const RenderTiming& timing,
                            const TrackRenderSnapshot* track, double outputSampleRate,
                            double songLengthBeats) noexcept {
  if (!canPlay(timing, track, outputSampleRate)) return;
  const LoopRange cycle = timing.loop.value_or(LoopRange{0, songLengthBeats});
  if (!(cycle.endBeat - cycle.startBeat > 0)) return;
  for (const AudioRenderClip& clip : track->audioClips) mixClip(into, timing, clip, cycle, outputSampleRate);
}

}  // namespace velmora
