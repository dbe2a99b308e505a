#include "VelmoraCore/Song/Song.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <unordered_set>

#include "VelmoraCore/Song/Bounds.h"
#include "VelmoraCore/Song/Limits.h"
#include "VelmoraCore/Song/Text.h"

namespace velmora {
namespace {

constexpr double barBeats = 4;
constexpr double shortestSongBeats = 16;
constexpr double lastStartBeat = limits::longestTimelineBeats - 1;

std::string_view familyWord(TrackFamily family) {
  constexpr std::array<std::string_view, 3> words{"Synth", "Drums", "Audio"};
  return words.at(static_cast<std::size_t>(family));
}

template <class Record>
std::vector<Record> ofTrack(const SharedList<Record>& list, const UUID& trackID) {
  std::vector<Record> found;
  std::copy_if(list.begin(), list.end(), std::back_inserter(found),
               [&](const Record& record) { return record.trackID == trackID; });
  return found;
}

Pattern newPattern(const UUID& trackID, std::string name) {
  Pattern pattern;
  pattern.id = UUID::random();
  pattern.trackID = trackID;
  pattern.name = std::move(name);
  return pattern;
}

Pattern copyOf(Pattern pattern, const UUID& trackID, std::string name) {
  pattern.id = UUID::random();
  pattern.trackID = trackID;
  pattern.name = std::move(name);
  return pattern;
}

void select(Song& song, Track track, const std::optional<UUID>& patternID) {
  track.selectedPatternID = patternID;
  song.update(track);
}

/// Puts the clip on another track of its family; false, with nothing changed, where that can't be.
bool moveToTrack(Song& song, Clip& clip, const UUID& trackID) {
  const Track* from = song.track(clip.trackID);
  const Track* to = song.track(trackID);
  if (!from || !to || from->kind.family() != to->kind.family()) return false;
  if (clip.source.isPattern()) {
    const Pattern* pattern = song.pattern(clip.source.id);
    if (!pattern) return false;
    const Pattern copy = copyOf(*pattern, trackID, pattern->name);
    clip.source = ClipSource::pattern(copy.id);
    song.update(copy);
  }
  clip.trackID = trackID;
  return true;
}

}  // namespace

const Track* Song::track(const UUID& trackID) const { return findByID(tracks, trackID); }
const Pattern* Song::pattern(const UUID& patternID) const { return findByID(patterns, patternID); }
const Clip* Song::clip(const UUID& clipID) const { return findByID(clips, clipID); }
const AudioAsset* Song::audioAsset(const UUID& assetID) const { return findByID(audioAssets, assetID); }
std::vector<Pattern> Song::patternsForTrack(const UUID& trackID) const { return ofTrack(patterns, trackID); }
std::vector<Clip> Song::clipsForTrack(const UUID& trackID) const { return ofTrack(clips, trackID); }

double Song::songLengthBeats() const {
  double endBeat = 0;
  for (const Clip& clip : clips) endBeat = std::max(endBeat, clip.startBeat + clip.lengthBeats);
  return std::max(std::ceil(endBeat / barBeats) * barBeats, shortestSongBeats);
}

std::string Song::defaultTrackName(TrackKind kind) const {
  const auto relatives = std::count_if(
      tracks.begin(), tracks.end(), [&](const Track& track) { return track.kind.family() == kind.family(); });
  return std::string(familyWord(kind.family())) + " " + std::to_string(relatives + 1);
}

Track Song::addTrack(TrackKind kind, std::optional<std::string> trackName) {
  const auto colors = allTrackColors();
  Track track;
  track.id = UUID::random();
  track.name = trackName ? std::move(*trackName) : defaultTrackName(kind);
  track.kind = kind;
  track.color = colors[tracks.size() % colors.size()];
  if (!kind.isAudio()) {
    const Pattern pattern = newPattern(track.id, "Pattern 1");
    patterns.write().push_back(pattern);
    track.selectedPatternID = pattern.id;
  }
  tracks.write().push_back(track);
  return track;
}

Pattern Song::addPattern(const UUID& trackID, std::optional<std::string> patternName) {
  const auto owned = std::count_if(patterns.begin(), patterns.end(),
                                   [&](const Pattern& pattern) { return pattern.trackID == trackID; });
  Pattern pattern =
      newPattern(trackID, patternName ? std::move(*patternName) : "Pattern " + std::to_string(owned + 1));
  if (const Track* owner = track(trackID)) {
    patterns.write().push_back(pattern);
    if (!owner->selectedPatternID) select(*this, *owner, pattern.id);
  }
  return pattern;
}

void Song::update(const Track& track) { replaceOrAppend(tracks, track); }
void Song::update(const Pattern& pattern) { replaceOrAppend(patterns, pattern); }
void Song::update(const Clip& clip) { replaceOrAppend(clips, clip); }

std::optional<UUID> Song::placePattern(const UUID& patternID, double startBeat) {
  const Pattern* source = pattern(patternID);
  const Track* owner = source ? track(source->trackID) : nullptr;
  if (!owner || owner->kind.isAudio() || !std::isfinite(startBeat)) return {};
  if (!std::isfinite(source->lengthBeats) || source->lengthBeats <= 0) return {};
  Clip clip;
  clip.id = UUID::random();
  clip.trackID = source->trackID;
  clip.source = ClipSource::pattern(source->id);
  clip.startBeat = raisedThenLowered(std::floor(startBeat), 0, lastStartBeat);
  clip.lengthBeats = std::min(source->lengthBeats, limits::longestTimelineBeats - clip.startBeat);
  update(clip);
  return clip.id;
}

void Song::editClip(const UUID& clipID, const ClipEdit& edit) {
  const Clip* found = clip(clipID);
  if (!found || !isFiniteIfGiven(edit.startBeat) || !isFiniteIfGiven(edit.lengthBeats)) return;
  Clip changed = *found;
  if (edit.trackID && *edit.trackID != changed.trackID && !moveToTrack(*this, changed, *edit.trackID)) return;
  if (edit.lengthBeats) {
    changed.lengthBeats = raisedThenLowered(std::round(*edit.lengthBeats), 1, limits::longestTimelineBeats);
  }
  changed.startBeat = raisedThenLowered(std::round(edit.startBeat.value_or(changed.startBeat)), 0,
                                        limits::longestTimelineBeats - changed.lengthBeats);
  update(changed);
}

void Song::removeClip(const UUID& clipID) {
  eraseIf(clips, [id = clipID](const Clip& clip) { return clip.id == id; });
}

void Song::removeTrack(const UUID& trackID) {
  const UUID removed = trackID;  // the argument may lie in the lists that change below
  std::unordered_set<UUID> orphans;
  for (const Pattern& pattern : patterns) {
    if (pattern.trackID == removed) orphans.insert(pattern.id);
  }
  eraseIf(tracks, [&](const Track& track) { return track.id == removed; });
  eraseIf(patterns, [&](const Pattern& pattern) { return pattern.trackID == removed; });
  eraseIf(clips, [&](const Clip& clip) {
    return clip.trackID == removed || (clip.source.isPattern() && orphans.contains(clip.source.id));
  });
}

void Song::removePattern(const UUID& patternID) {
  const Pattern* found = pattern(patternID);
  if (!found) return;
  const UUID removed = patternID;  // the argument may lie in the lists that change below
  const UUID ownerID = found->trackID;
  eraseIf(patterns, [&](const Pattern& pattern) { return pattern.id == removed; });
  eraseIf(clips, [&](const Clip& clip) { return clip.source == ClipSource::pattern(removed); });
  const Track* owner = track(ownerID);
  if (!owner || owner->selectedPatternID != removed) return;
  const auto next = std::find_if(patterns.begin(), patterns.end(),
                                 [&](const Pattern& pattern) { return pattern.trackID == ownerID; });
  select(*this, *owner, next == patterns.end() ? std::nullopt : std::optional(next->id));
}

void Song::selectPattern(const UUID& patternID, const UUID& trackID) {
  const Pattern* wanted = pattern(patternID);
  const Track* owner = track(trackID);
  if (!wanted || wanted->trackID != trackID || !owner || owner->kind.isAudio()) return;
  select(*this, *owner, wanted->id);
}

std::optional<Pattern> Song::duplicatePattern(const UUID& patternID) {
  const Pattern* source = pattern(patternID);
  const Track* owner = source ? track(source->trackID) : nullptr;
  if (!owner || owner->kind.isAudio()) return {};
  std::unordered_set<std::string_view> taken;
  for (const Pattern& pattern : patterns) {
    if (pattern.trackID == owner->id) taken.insert(pattern.name);
  }
  const std::string base = source->name + " Copy";
  std::string free = base;
  for (int number = 2; taken.contains(free); ++number) free = base + " " + std::to_string(number);
  const Pattern copy = copyOf(*source, owner->id, std::move(free));
  patterns.write().push_back(copy);
  selectPattern(copy.id, copy.trackID);
  return copy;
}

void Song::renamePattern(const UUID& patternID, std::string_view patternName) {
  const Pattern* found = pattern(patternID);
  const std::string_view kept = trimmed(patternName);
  if (!found || kept.empty()) return;
  Pattern renamed = *found;
  renamed.name = kept;
  update(renamed);
}

void Song::setLoop(double startBeat, double endBeat) {
  if (!std::isfinite(startBeat) || !std::isfinite(endBeat)) return;
  const double start = raisedThenLowered(std::round(startBeat), 0, lastStartBeat);
  loop = LoopRange{start, raisedThenLowered(std::round(endBeat), start + 1, limits::longestTimelineBeats)};
}

}  // namespace velmora
