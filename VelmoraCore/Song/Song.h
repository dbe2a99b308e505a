#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "VelmoraCore/Song/AudioAsset.h"
#include "VelmoraCore/Song/Clip.h"
#include "VelmoraCore/Song/Pattern.h"
#include "VelmoraCore/Song/SharedList.h"
#include "VelmoraCore/Song/Track.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// A range of beats, the end excluded.
struct LoopRange {
  double startBeat = 0;
  double endBeat = 0;

  bool operator==(const LoopRange&) const = default;
};

/// The changes that `Song::editClip` makes; what is empty stays.
struct ClipEdit {
  std::optional<double> startBeat{};
  std::optional<double> lengthBeats{};
  std::optional<UUID> trackID{};
};

/// The whole project: a plain value whose lists share storage until written, so that a copy costs a few
/// pointers.
///
/// The edit helpers are silent: unusable arguments leave the document as it was, values out of range are
/// clamped. From a valid document they always make a valid one, save for the count limits, which only
/// validation knows.
struct Song {
  UUID id{};
  std::string name{};
  double bpm = 128;
  SharedList<Track> tracks{};      ///< in display order
  SharedList<Pattern> patterns{};  ///< of all tracks, in creation order
  SharedList<Clip> clips{};        ///< of all tracks
  SharedList<AudioAsset> audioAssets{};
  std::optional<LoopRange> loop{};  ///< empty means that the whole song loops
  float masterVolume = 0.9F;

  bool operator==(const Song&) const = default;

  /// The demo project: a drum beat and four bars of chords at 128 bpm.
  static Song demo();

  /// A project with one empty drum track.
  static Song empty(std::string name);

  // Lookups scan in order; the pointers are valid until the next edit.
  const Track* track(const UUID& trackID) const;
  const Pattern* pattern(const UUID& patternID) const;
  const Clip* clip(const UUID& clipID) const;
  const AudioAsset* audioAsset(const UUID& assetID) const;
  std::vector<Pattern> patternsForTrack(const UUID& trackID) const;
  std::vector<Clip> clipsForTrack(const UUID& trackID) const;

  /// The end of the last clip rounded up to whole four-beat bars, at least 16 beats.
  double songLengthBeats() const;

  /// The family word and the count of the family's tracks plus one: "Synth 3".
  std::string defaultTrackName(TrackKind kind) const;

  Track addTrack(TrackKind kind, std::optional<std::string> name = {});
  Pattern addPattern(const UUID& trackID, std::optional<std::string> name = {});

  // Replaces the record with the same id in place; appends it if there is none.
  void update(const Track& track);
  void update(const Pattern& pattern);
  void update(const Clip& clip);

  /// Places a whole pattern at the beat rounded down; returns the clip's id.
  std::optional<UUID> placePattern(const UUID& patternID, double startBeat);

  /// Moves or resizes a clip on whole beats. A move to another track of the family takes a copy of the
  /// pattern along.
  void editClip(const UUID& clipID, const ClipEdit& edit);

  void removeClip(const UUID& clipID);

  /// Removes a track with its patterns, its clips and every clip of those patterns; audio assets stay.
  void removeTrack(const UUID& trackID);
  void removePattern(const UUID& patternID);
  void selectPattern(const UUID& patternID, const UUID& trackID);
  std::optional<Pattern> duplicatePattern(const UUID& patternID);
  void renamePattern(const UUID& patternID, std::string_view name);

  /// Stores a loop of whole beats, at least one beat long.
  void setLoop(double startBeat, double endBeat);
};

}  // namespace velmora
