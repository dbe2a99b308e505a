#include "Velmora/Studio/StepGrid/PatternBeat.h"

#include <algorithm>
#include <cmath>

#include "VelmoraCore/Render/BeatMath.h"

namespace velmora {
namespace {

bool plays(const Clip& clip, const Pattern& pattern, double beat) {
  return clip.trackID == pattern.trackID && clip.source == ClipSource::pattern(pattern.id) &&
         clip.startBeat <= beat && beat < clip.startBeat + clip.lengthBeats;
}

}  // namespace

std::optional<double> patternBeat(const Song& song, const Pattern& pattern,
                                  const TransportPosition& position) {
  const LoopRange range{0, pattern.lengthBeats};
  if (!std::isfinite(range.endBeat) || range.endBeat <= 0) return {};
  if (position.mode == PlaybackMode::pattern) return BeatMath::wrap(position.renderedBeat, range);
  const auto clip = std::find_if(song.clips.begin(), song.clips.end(),
                                 [&](const Clip& each) { return plays(each, pattern, position.playhead); });
  if (clip == song.clips.end()) return {};
  return BeatMath::wrap(position.playhead - clip->startBeat, range);
}

}  // namespace velmora
