#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "VelmoraCore/Render/AudioSample.h"
#include "VelmoraCore/Render/NoteEvent.h"
#include "VelmoraCore/Render/TransportController.h"
#include "VelmoraCore/Song/SharedList.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// The decoded audio of a project, by asset id.
using AudioSamples = std::unordered_map<UUID, std::shared_ptr<const AudioSample>>;

/// An audio clip as the renderer sees it.
struct AudioRenderClip {
  double startBeat = 0;
  double lengthBeats = 0;
  std::shared_ptr<const AudioSample> sample;

  bool operator==(const AudioRenderClip&) const = default;
};

/// One track, compiled: all the musical rules (tiling, cutting, mute and solo) are applied already.
/// Immutable.
struct TrackRenderSnapshot {
  UUID trackID;
  TrackKind kind = TrackKind::drums();
  SharedList<AudioRenderClip> audioClips;   ///< song mode only
  SharedList<NoteEvent> events;             ///< sorted
  std::optional<double> patternLoopLength;  ///< pattern mode only: the selected pattern's length in beats
  bool isAudible = true;
  float volume = 0;
  float pan = 0;
  std::int64_t eventsFingerprint = 0;

  bool operator==(const TrackRenderSnapshot&) const = default;
};

/// A song compiled for the audio threads. Immutable; made on the main thread, published whole.
class RenderSnapshot {
 public:
  using Tracks = std::vector<std::shared_ptr<const TrackRenderSnapshot>>;

  /// Compiles a song from scratch; `SnapshotCompiler` gives the same and keeps what didn't change.
  RenderSnapshot(const Song& song, PlaybackMode mode, const AudioSamples& samples);
  RenderSnapshot(PlaybackMode mode, double songLengthBeats, Tracks tracks);

  /// Pattern mode, 16 beats, no tracks: what every store starts with.
  static const std::shared_ptr<const RenderSnapshot>& empty();

  PlaybackMode mode() const noexcept { return mode_; }
  double songLengthBeats() const noexcept { return songLengthBeats_; }
  const Tracks& tracks() const noexcept { return tracks_; }

  /// The compiled track, or null. [audio thread]
  const TrackRenderSnapshot* trackSnapshot(const UUID& id) const noexcept;

 private:
  PlaybackMode mode_;
  double songLengthBeats_;
  Tracks tracks_;  // in track order
  std::unordered_map<UUID, const TrackRenderSnapshot*> tracksByID_;
};

}  // namespace velmora
