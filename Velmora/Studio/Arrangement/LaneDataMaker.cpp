#include "Velmora/Studio/Arrangement/LaneDataMaker.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace velmora {

namespace {

/// Compares what the lanes show of two lists.
template <class Record, class Same>
bool agree(const SharedList<Record>& a, const SharedList<Record>& b, const Same& same) {
  return a.sharesStorage(b) || std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

bool showSame(const Pattern& a, const Pattern& b) {
  return a.id == b.id && a.lengthBeats == b.lengthBeats && a.name == b.name;
}

using TrackIDs = std::unordered_set<UUID>;

TrackIDs allTracks(const Song& song) {
  TrackIDs all;
  for (const Track& track : song.tracks) all.insert(track.id);
  return all;
}

/// The tracks whose clips aren't the same in both lists.
TrackIDs changedTracks(const SharedList<Clip>& a, const SharedList<Clip>& b) {
  TrackIDs changed;
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t index = 0; index < common; ++index) {
    if (a[index] != b[index]) changed.insert({a[index].trackID, b[index].trackID});
  }
  for (const SharedList<Clip>* list : {&a, &b}) {
    for (std::size_t index = common; index < list->size(); ++index) changed.insert((*list)[index].trackID);
  }
  return changed;
}

}  // namespace

/// What clips play, by id.
struct LaneDataMaker::Sources {
  struct Source {
    QString name;
    std::optional<double> tileLength;
  };
  using Table = std::unordered_map<UUID, Source>;

  explicit Sources(const Song& song) {
    for (const Pattern& pattern : song.patterns)
      patterns.try_emplace(pattern.id, Source{QString::fromStdString(pattern.name), pattern.lengthBeats});
    for (const AudioAsset& asset : song.audioAssets)
      assets.try_emplace(asset.id, Source{QString::fromStdString(asset.name.value_or(asset.fileName)), {}});
  }

  const Source& of(const ClipSource& source) const {
    static const Source lostPattern{QStringLiteral("Pattern"), {}};
    static const Source lostAsset{QStringLiteral("Audio"), {}};
    const Table& table = source.isPattern() ? patterns : assets;
    const auto found = table.find(source.id);
    if (found != table.end()) return found->second;
    return source.isPattern() ? lostPattern : lostAsset;
  }

  Table patterns;
  Table assets;
};

LaneDataMaker::LaneDataMaker() : sources_(std::make_shared<const Sources>(last_)) {}

bool LaneDataMaker::hasSameSources(const Song& song) const {
  return agree(song.patterns, last_.patterns, showSame) &&
         agree(song.audioAssets, last_.audioAssets, std::equal_to<>());
}

bool LaneDataMaker::hasSameTracks(const Song& song) const {
  return agree(song.tracks, last_.tracks,
               [](const Track& a, const Track& b) { return a.id == b.id && a.color == b.color; });
}

const LaneData& LaneDataMaker::make(const Song& song) {
  const bool hasOldSources = hasSameSources(song);
  const bool hasOldLanes = hasOldSources && hasSameTracks(song);
  if (!hasOldSources) sources_ = std::make_shared<const Sources>(song);
  if (!hasOldLanes) {
    makeLanes(song, allTracks(song));
  } else if (!song.clips.sharesStorage(last_.clips)) {
    makeLanes(song, changedTracks(song.clips, last_.clips));
  }
  last_ = song;
  return data_;
}

void LaneDataMaker::makeLanes(const Song& song, const TrackIDs& changed) {
  std::unordered_map<UUID, std::vector<ClipBox>> clips;
  for (const Clip& clip : song.clips) {
    if (!changed.contains(clip.trackID)) continue;
    const Sources::Source& source = sources_->of(clip.source);
    clips[clip.trackID].push_back(
        {clip.id, clip.startBeat, clip.lengthBeats, source.name, source.tileLength});
  }
  std::vector<Lane> lanes;
  for (const Track& track : song.tracks) {
    const Lane* old = findByID(data_.lanes, track.id);
    const bool isOld = old && (!changed.contains(track.id) || old->clips.items() == clips[track.id]);
    lanes.push_back({track.id, track.color, isOld ? old->clips : SharedList(std::move(clips[track.id]))});
  }
  data_.lanes = SharedList<Lane>(std::move(lanes));
}

}  // namespace velmora
