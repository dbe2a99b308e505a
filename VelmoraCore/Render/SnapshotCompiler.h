#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "VelmoraCore/Render/RenderSnapshot.h"

namespace velmora {

/// Compiles songs and reuses from the last one what neither the track, nor its patterns, nor its clips
/// changed.
///
/// The result equals a compile from scratch, field for field. A change of the mix costs a walk over the
/// tracks; an edit of one pattern a walk over patterns and clips and the sorting of the tracks that play it.
/// Main thread.
class SnapshotCompiler {
 public:
  std::shared_ptr<const RenderSnapshot> compile(const Song& song, PlaybackMode mode,
                                                const AudioSamples& samples);

 private:
  using PatternIndex = std::unordered_map<UUID, const Pattern*>;
  using ClipIndex = std::unordered_map<UUID, std::vector<Clip>>;

  /// A track as it was compiled, and what came of it.
  struct CompiledTrack {
    const Track* track = nullptr;
    std::shared_ptr<const TrackRenderSnapshot> snapshot;
  };

  /// A song with its indexes, which point into the song's shared storage.
  struct Source {
    Song song;
    PlaybackMode mode = PlaybackMode::pattern;
    AudioSamples samples;
    std::shared_ptr<const PatternIndex> patterns = std::make_shared<PatternIndex>();
    std::shared_ptr<const ClipIndex> clips = std::make_shared<ClipIndex>();
    std::unordered_map<UUID, CompiledTrack> tracks;

    const Pattern* pattern(const UUID& id) const;
    const std::vector<Clip>& clipsOf(const UUID& trackID) const;
  };

  void index(Source& source) const;
  std::shared_ptr<const TrackRenderSnapshot> compileTrack(const Track& track, const Source& source,
                                                          bool isAnySoloed) const;
  bool playsSameNotes(const Track& track, const Track& before, const Source& source) const;
  bool playsSameAudio(const Track& track, const Source& source) const;

  static void compileNotes(TrackRenderSnapshot& result, const Track& track, const Source& source);
  static void compileAudio(TrackRenderSnapshot& result, const Track& track, const Source& source);

  Source last_;
};

}  // namespace velmora
