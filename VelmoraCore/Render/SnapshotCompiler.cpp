#include "VelmoraCore/Render/SnapshotCompiler.h"

#include <algorithm>
#include <utility>

#include "VelmoraCore/Render/EventCompiler.h"

namespace velmora {

namespace {

bool isAudible(const Track& track, bool isAnySoloed) {
  if (track.isMuted) return false;
  return !isAnySoloed || track.isSoloed;
}

/// Whether both are absent, or both hold the same notes in the same length.
bool soundsSame(const Pattern* a, const Pattern* b) {
  if (!a || !b) return a == b;
  return a->lengthBeats == b->lengthBeats && a->notes == b->notes;
}

}  // namespace

const Pattern* SnapshotCompiler::Source::pattern(const UUID& id) const {
  const auto found = patterns->find(id);
  return found == patterns->end() ? nullptr : found->second;
}

const std::vector<Clip>& SnapshotCompiler::Source::clipsOf(const UUID& trackID) const {
  static const std::vector<Clip> none;
  const auto found = clips->find(trackID);
  return found == clips->end() ? none : found->second;
}

std::shared_ptr<const RenderSnapshot> SnapshotCompiler::compile(const Song& song, PlaybackMode mode,
                                                                const AudioSamples& samples) {
  Source source;
  source.song = song;
  source.mode = mode;
  source.samples = samples;
  index(source);

  const auto& items = source.song.tracks.items();
  const bool isAnySoloed =
      std::any_of(items.begin(), items.end(), [](const Track& track) { return track.isSoloed; });
  RenderSnapshot::Tracks tracks;
  tracks.reserve(items.size());
  for (const Track& track : items) {
    tracks.push_back(compileTrack(track, source, isAnySoloed));
    source.tracks.insert_or_assign(track.id, CompiledTrack{&track, tracks.back()});
  }
  last_ = std::move(source);
  return std::make_shared<const RenderSnapshot>(mode, song.songLengthBeats(), std::move(tracks));
}

void SnapshotCompiler::index(Source& source) const {
  if (source.song.patterns.sharesStorage(last_.song.patterns)) {
    source.patterns = last_.patterns;
  } else {
    PatternIndex patterns;
    patterns.reserve(source.song.patterns.size());
    for (const Pattern& pattern : source.song.patterns) patterns.emplace(pattern.id, &pattern);
    source.patterns = std::make_shared<const PatternIndex>(std::move(patterns));
  }
  if (source.song.clips.sharesStorage(last_.song.clips)) {
    source.clips = last_.clips;
  } else {
    ClipIndex clips;
    for (const Clip& clip : source.song.clips) clips[clip.trackID].push_back(clip);
    source.clips = std::make_shared<const ClipIndex>(std::move(clips));
  }
}

std::shared_ptr<const TrackRenderSnapshot> SnapshotCompiler::compileTrack(const Track& track,
                                                                          const Source& source,
                                                                          bool isAnySoloed) const {
  const auto found = last_.tracks.find(track.id);
  const CompiledTrack* before = found == last_.tracks.end() ? nullptr : &found->second;

  TrackRenderSnapshot result;
  result.trackID = track.id;
  result.kind = track.kind;
  result.isAudible = isAudible(track, isAnySoloed);
  result.volume = track.volume;
  result.pan = track.pan;
  if (before && playsSameNotes(track, *before->track, source)) {
    result.events = before->snapshot->events;
    result.eventsFingerprint = before->snapshot->eventsFingerprint;
    result.patternLoopLength = before->snapshot->patternLoopLength;
  } else {
    compileNotes(result, track, source);
  }
  if (before && playsSameAudio(track, source)) {
    result.audioClips = before->snapshot->audioClips;
  } else {
    compileAudio(result, track, source);
  }
  if (before && result == *before->snapshot) return before->snapshot;
  return std::make_shared<const TrackRenderSnapshot>(std::move(result));
}

bool SnapshotCompiler::playsSameNotes(const Track& track, const Track& before, const Source& source) const {
  if (source.mode != last_.mode) return false;
  const bool arePatternsShared = source.patterns == last_.patterns;
  const auto isSame = [&](const UUID& patternID) {
    return arePatternsShared || soundsSame(source.pattern(patternID), last_.pattern(patternID));
  };
  if (source.mode == PlaybackMode::pattern) {
    return track.selectedPatternID == before.selectedPatternID &&
           (!track.selectedPatternID || isSame(*track.selectedPatternID));
  }
  const auto& clips = source.clipsOf(track.id);
  if (source.clips != last_.clips && clips != last_.clipsOf(track.id)) return false;
  return arePatternsShared || std::all_of(clips.begin(), clips.end(), [&](const Clip& clip) {
           return clip.source.isAudio() || isSame(clip.source.id);
         });
}

bool SnapshotCompiler::playsSameAudio(const Track& track, const Source& source) const {
  if (source.mode != last_.mode) return false;
  if (source.mode == PlaybackMode::pattern) return true;
  if (source.samples != last_.samples) return false;
  return source.clips == last_.clips || source.clipsOf(track.id) == last_.clipsOf(track.id);
}

void SnapshotCompiler::compileNotes(TrackRenderSnapshot& result, const Track& track, const Source& source) {
  std::vector<NoteEvent> events;
  if (source.mode == PlaybackMode::song) {
    for (const Clip& clip : source.clipsOf(track.id)) {
      const Pattern* pattern = clip.source.isPattern() ? source.pattern(clip.source.id) : nullptr;
      if (pattern) EventCompiler::appendClip(events, clip, *pattern);
    }
  } else if (track.selectedPatternID) {
    if (const Pattern* pattern = source.pattern(*track.selectedPatternID)) {
      result.patternLoopLength = pattern->lengthBeats;
      EventCompiler::appendPattern(events, *pattern);
    }
  }
  std::sort(events.begin(), events.end());
  result.eventsFingerprint = fingerprint(events);
  result.events = SharedList(std::move(events));
}

void SnapshotCompiler::compileAudio(TrackRenderSnapshot& result, const Track& track, const Source& source) {
  if (source.mode != PlaybackMode::song) return;
  std::vector<AudioRenderClip> clips;
  for (const Clip& clip : source.clipsOf(track.id)) {
    if (!clip.source.isAudio()) continue;
    const auto sample = source.samples.find(clip.source.id);
    if (sample != source.samples.end()) clips.push_back({clip.startBeat, clip.lengthBeats, sample->second});
  }
  result.audioClips = SharedList(std::move(clips));
}

}  // namespace velmora
