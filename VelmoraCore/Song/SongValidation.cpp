#include "VelmoraCore/Song/SongValidation.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "VelmoraCore/Song/Limits.h"

namespace velmora {
namespace {

void require(bool holds) {
  if (!holds) throw InvalidProject();
}

// False for what isn't a number, as every comparison below.
template <class Number>
bool isWithin(Number value, Number low, Number high) {
  return value >= low && value <= high;
}

/// The records of a list, sorted by id. Sorting has no bad case that a hand-made document could provoke.
template <class Record>
class IDIndex {
 public:
  explicit IDIndex(const SharedList<Record>& list) {
    entries_.reserve(list.size());
    for (const Record& record : list) entries_.push_back({record.id, &record});
    std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) { return a.id < b.id; });
  }

  bool isUnique() const {
    const auto isSame = [](const Entry& a, const Entry& b) { return a.id == b.id; };
    return std::adjacent_find(entries_.begin(), entries_.end(), isSame) == entries_.end();
  }

  const Record* find(const UUID& id) const {
    const auto isBefore = [](const Entry& entry, const UUID& wanted) { return entry.id < wanted; };
    const auto found = std::lower_bound(entries_.begin(), entries_.end(), id, isBefore);
    return found == entries_.end() || found->id != id ? nullptr : found->record;
  }

 private:
  struct Entry {
    UUID id;
    const Record* record;
  };
  std::vector<Entry> entries_;
};

/// Checks one document; the records find each other through indexes that are built once.
class Validator {
 public:
  explicit Validator(const Song& song)
      : song_(song), tracks_(song.tracks), patterns_(song.patterns), assets_(song.audioAssets) {}

  void checkAll() const {
    checkSong();
    for (const Track& track : song_.tracks) checkTrack(track);
    for (const Pattern& pattern : song_.patterns) checkPattern(pattern);
    for (const Clip& clip : song_.clips) checkClip(clip);
    for (const AudioAsset& asset : song_.audioAssets) checkAsset(asset);
    if (song_.loop) checkLoop(*song_.loop);
  }

 private:
  void checkSong() const {
    require(isWithin(song_.bpm, limits::lowestBPM, limits::highestBPM));
    require(isWithin(song_.masterVolume, 0.0F, 1.0F));
    require(song_.tracks.size() <= limits::mostTracks && tracks_.isUnique());
    require(patterns_.isUnique() && IDIndex(song_.clips).isUnique() && assets_.isUnique());
    require(song_.patterns.size() <= limits::mostPatterns && song_.clips.size() <= limits::mostClips);
  }

  void checkTrack(const Track& track) const {
    require(isWithin(track.volume, 0.0F, 1.0F) && isWithin(track.pan, -1.0F, 1.0F));
    for (const float gainDB : {track.fx.lowGainDB, track.fx.midGainDB, track.fx.highGainDB}) {
      require(isWithin(gainDB, -12.0F, 12.0F));
    }
    require(isWithin(track.fx.delayMix, 0.0F, 1.0F) && isWithin(track.fx.reverbMix, 0.0F, 1.0F));
    require(!track.selectedPatternID || isPatternOf(track.id, *track.selectedPatternID));
  }

  void checkPattern(const Pattern& pattern) const {
    require(tracks_.find(pattern.trackID));
    require(isWithin(pattern.lengthBeats, limits::shortestPatternBeats, limits::longestTimelineBeats));
    require(pattern.notes.size() <= limits::mostNotesInPattern && IDIndex(pattern.notes).isUnique());
    for (const Note& note : pattern.notes) {
      require(note.pitch <= 127 && isWithin<int>(note.velocity, 1, 127));
      require(note.startBeat >= 0 && note.startBeat < pattern.lengthBeats && note.durationBeats > 0);
      require(note.startBeat + note.durationBeats <= pattern.lengthBeats + limits::noteEndTolerance);
    }
  }

  void checkClip(const Clip& clip) const {
    const Track* track = tracks_.find(clip.trackID);
    require(track);
    require(clip.startBeat >= 0 && clip.lengthBeats > 0);
    require(clip.startBeat + clip.lengthBeats <= limits::longestTimelineBeats);
    if (clip.source.isPattern()) {
      require(isPatternOf(clip.trackID, clip.source.id));
    } else {
      require(assets_.find(clip.source.id) && track->kind.isAudio());
    }
  }

  static void checkAsset(const AudioAsset& asset) {
    const std::string& file = asset.fileName;
    // A path ends at a NUL, so a name that holds one isn't the last component of its own path.
    require(file.find_first_of(std::string_view("/\0", 2)) == std::string::npos);
    require(!file.empty() && file != "." && file != "..");
    require(std::isfinite(asset.sampleRate) && asset.sampleRate > 0 && asset.frameCount >= 0);
    require(asset.channelCount == 1 || asset.channelCount == 2);
  }

  static void checkLoop(const LoopRange& loop) {
    require(loop.startBeat >= 0 && loop.endBeat <= limits::longestTimelineBeats &&
            loop.endBeat > loop.startBeat);
  }

  bool isPatternOf(const UUID& trackID, const UUID& patternID) const {
    const Pattern* pattern = patterns_.find(patternID);
    return pattern && pattern->trackID == trackID;
  }

  const Song& song_;
  IDIndex<Track> tracks_;
  IDIndex<Pattern> patterns_;
  IDIndex<AudioAsset> assets_;
};

}  // namespace

void validateSong(const Song& song) { Validator(song).checkAll(); }

}  // namespace velmora
