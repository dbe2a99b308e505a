#include "VelmoraCore/Render/RenderSnapshot.h"

#include "VelmoraCore/Render/SnapshotCompiler.h"

namespace velmora {

RenderSnapshot::RenderSnapshot(const Song& song, PlaybackMode mode, const AudioSamples& samples)
    : RenderSnapshot(*SnapshotCompiler().compile(song, mode, samples)) {}

RenderSnapshot::RenderSnapshot(PlaybackMode mode, double songLengthBeats, Tracks tracks)
    : mode_(mode), songLengthBeats_(songLengthBeats), tracks_(std::move(tracks)) {
  tracksByID_.reserve(tracks_.size());
  for (const auto& track : tracks_) tracksByID_.insert_or_assign(track->trackID, track.get());
}

const std::shared_ptr<const RenderSnapshot>& RenderSnapshot::empty() {
  static const auto instance = std::make_shared<const RenderSnapshot>(PlaybackMode::pattern, 16, Tracks{});
  return instance;
}

const TrackRenderSnapshot* RenderSnapshot::trackSnapshot(const UUID& id) const noexcept {
  const auto found = tracksByID_.find(id);
  return found == tracksByID_.end() ? nullptr : found->second;
}

}  // namespace velmora
