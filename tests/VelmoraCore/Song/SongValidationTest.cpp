#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

#include "VelmoraCore/Song/SongFields.h"
#include "VelmoraCore/Song/SongValidation.h"
#include "tests/support/Songs.h"

namespace velmora::testing {
namespace {

bool isValid(const Song& song) {
  try {
    validateSong(song);
    return true;
  } catch (const InvalidProject& error) {
    EXPECT_STREQ(error.what(), "This project contains invalid or unsupported data.");
    return false;
  }
}

Track& track(Song& song, std::size_t index = 0) { return song.tracks.write()[index]; }
Pattern& pattern(Song& song, std::size_t index = 0) { return song.patterns.write()[index]; }
Note& noteOf(Song& song) { return pattern(song).notes.write()[1]; }
Clip& clip(Song& song, std::size_t index = 0) { return song.clips.write()[index]; }
AudioAsset& asset(Song& song) { return song.audioAssets.write()[0]; }

// Fills a list with copies of its last record under new ids.
template <class Record>
void fill(SharedList<Record>& list, std::size_t size) {
  std::vector<Record>& items = list.write();
  Record copy = items.back();
  while (items.size() < size) {
    copy.id = UUID::random();
    items.push_back(copy);
  }
}

template <class Record>
void repeatFirst(SharedList<Record>& list) {
  list.write().push_back(Record(list.front()));
}

struct Row {
  const char* name;
  std::function<void(Song&)> change;
};

// Each breaks one rule of a valid song.
const Row refused[] = {
    {"bpm low", [](Song& s) { s.bpm = 39.9; }},
    {"bpm high", [](Song& s) { s.bpm = 300.1; }},
    {"master low", [](Song& s) { s.masterVolume = -0.01F; }},
    {"master high", [](Song& s) { s.masterVolume = 1.01F; }},
    {"tracks", [](Song& s) { fill(s.tracks, 129); }},
    {"track ids", [](Song& s) { repeatFirst(s.tracks); }},
    {"pattern ids", [](Song& s) { repeatFirst(s.patterns); }},
    {"clip ids", [](Song& s) { repeatFirst(s.clips); }},
    {"asset ids", [](Song& s) { repeatFirst(s.audioAssets); }},
    {"patterns", [](Song& s) { fill(s.patterns, 4097); }},
    {"clips", [](Song& s) { fill(s.clips, 16385); }},
    {"volume low", [](Song& s) { track(s).volume = -0.01F; }},
    {"volume high", [](Song& s) { track(s).volume = 1.01F; }},
    {"pan low", [](Song& s) { track(s).pan = -1.01F; }},
    {"pan high", [](Song& s) { track(s).pan = 1.01F; }},
    {"low gain", [](Song& s) { track(s).fx.lowGainDB = 12.1F; }},
    {"mid gain", [](Song& s) { track(s).fx.midGainDB = -12.1F; }},
    {"high gain", [](Song& s) { track(s).fx.highGainDB = 12.1F; }},
    {"delay", [](Song& s) { track(s).fx.delayMix = 1.01F; }},
    {"reverb", [](Song& s) { track(s).fx.reverbMix = -0.01F; }},
    {"selection unknown", [](Song& s) { track(s).selectedPatternID = uuid(77); }},
    {"selection foreign", [](Song& s) { track(s).selectedPatternID = uuid(12); }},
    {"pattern's track", [](Song& s) { pattern(s, 1).trackID = uuid(77); }},
    {"length low", [](Song& s) { pattern(s, 1).lengthBeats = 0.2; }},
    {"length high", [](Song& s) { pattern(s).lengthBeats = 16384.1; }},
    {"notes", [](Song& s) { fill(pattern(s).notes, 65537); }},
    {"note ids", [](Song& s) { noteOf(s).id = uuid(21); }},
    {"pitch", [](Song& s) { noteOf(s).pitch = 128; }},
    {"velocity low", [](Song& s) { noteOf(s).velocity = 0; }},
    {"velocity high", [](Song& s) { noteOf(s).velocity = 128; }},
    {"note start low", [](Song& s) { noteOf(s).startBeat = -0.01; }},
    {"note start high",
     [](Song& s) {
       noteOf(s) = {uuid(22), 42, 4, 1e-9, 1};
     }},
    {"note duration", [](Song& s) { noteOf(s).durationBeats = 0; }},
    {"note end", [](Song& s) { noteOf(s).durationBeats = 3.50001; }},
    {"clip's track", [](Song& s) { clip(s, 1).trackID = uuid(77); }},
    {"clip start", [](Song& s) { clip(s).startBeat = -0.01; }},
    {"clip length", [](Song& s) { clip(s).lengthBeats = 0; }},
    {"clip end", [](Song& s) { clip(s).startBeat = 16376.1; }},
    {"clip's pattern unknown", [](Song& s) { clip(s).source = ClipSource::pattern(uuid(77)); }},
    {"clip's pattern foreign", [](Song& s) { clip(s).source = ClipSource::pattern(uuid(12)); }},
    {"clip's asset unknown", [](Song& s) { clip(s, 1).source = ClipSource::audio(uuid(77)); }},
    {"clip's asset on drums", [](Song& s) { clip(s, 1).trackID = uuid(1); }},
    {"file with folder", [](Song& s) { asset(s).fileName = "audio/take.caf"; }},
    {"file with slash", [](Song& s) { asset(s).fileName = "take.caf/"; }},
    {"file is the root", [](Song& s) { asset(s).fileName = "/"; }},
    {"file with NUL", [](Song& s) { asset(s).fileName = std::string("..\0.caf", 7); }},
    {"file empty", [](Song& s) { asset(s).fileName = ""; }},
    {"file is the folder", [](Song& s) { asset(s).fileName = "."; }},
    {"file is the parent", [](Song& s) { asset(s).fileName = ".."; }},
    {"rate", [](Song& s) { asset(s).sampleRate = 0; }},
    {"frames", [](Song& s) { asset(s).frameCount = -1; }},
    {"channels low", [](Song& s) { asset(s).channelCount = 0; }},
    {"channels high", [](Song& s) { asset(s).channelCount = 3; }},
    {"loop start",
     [](Song& s) {
       s.loop = LoopRange{-0.01, 8};
     }},
    {"loop end",
     [](Song& s) {
       s.loop = LoopRange{0, 16384.1};
     }},
    {"loop empty",
     [](Song& s) {
       s.loop = LoopRange{8, 8};
     }},
};

const Row accepted[] = {
    {"as it is", [](Song&) {}},
    {"bpm", [](Song& s) { s.bpm = 40; }},
    {"bpm", [](Song& s) { s.bpm = 300; }},
    {"pan", [](Song& s) { track(s).pan = -1; }},
    {"pan", [](Song& s) { track(s).pan = 1; }},
    {"counts",
     [](Song& s) {
       fill(s.tracks, 128);
       fill(s.patterns, 4096);
       fill(s.clips, 16384);
     }},
    {"notes", [](Song& s) { fill(pattern(s).notes, 65536); }},
    {"note end", [](Song& s) { noteOf(s).durationBeats = 3.5000001; }},
    {"note ids of two patterns", [](Song& s) { pattern(s, 1).notes = s.patterns[0].notes; }},
    {"clip end", [](Song& s) { clip(s).startBeat = 16376; }},
    {"frames", [](Song& s) { asset(s).frameCount = 0; }},
    {"same file", [](Song& s) { fill(s.audioAssets, 2); }},
    {"file with dots", [](Song& s) { asset(s).fileName = "..caf"; }},
    {"names", [](Song& s) { s.name = track(s).name = ""; }},
    {"loop",
     [](Song& s) {
       s.loop = LoopRange{0.5, 16384};
     }},
    {"no loop", [](Song& s) { s.loop.reset(); }},
};

TEST(SongValidation, RefusesEachBrokenRule) {
  for (const Row& row : refused) {
    Song song = sampleSong();
    row.change(song);
    EXPECT_FALSE(isValid(song)) << row.name;
  }
}

TEST(SongValidation, AcceptsTheLimitsThemselves) {
  for (const Row& row : accepted) {
    Song song = sampleSong();
    row.change(song);
    EXPECT_TRUE(isValid(song)) << row.name;
  }
}

// Calls `visit` with every floating-point field of a record and of all that it holds.
template <class T, class Visitor>
void forEachFloat(T& value, Visitor& visit) {
  if constexpr (std::is_floating_point_v<T>) {
    visit(value);
  } else if constexpr (fields::Record<T>) {
    fields::forEach(fields::fieldsOf<T>,
                    [&](const auto& field) { forEachFloat(value.*field.member, visit); });
  } else if constexpr (fields::isList<T>) {
    for (auto& item : value.write()) forEachFloat(item, visit);
  } else if constexpr (fields::isOptional<T>) {
    if (value) forEachFloat(*value, visit);
  }
}

TEST(SongValidation, RefusesEveryNumberThatIsNotFinite) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const auto setFloat = [](Song& song, int index, double number) {
    int left = index;
    const auto visit = [&]<class Float>(Float& value) {
      if (left-- == 0) value = static_cast<Float>(number);
    };
    forEachFloat(song, visit);
    return left < 0;
  };
  int count = 0;
  for (Song song = sampleSong(); setFloat(song, count, 0.5); ++count) {
    for (const double number : {std::nan(""), infinity, -infinity}) {
      Song broken = sampleSong();
      setFloat(broken, count, number);
      EXPECT_FALSE(isValid(broken)) << "number " << count << " is " << number;
    }
  }
  EXPECT_EQ(count, 2 + 3 * 7 + 2 + 2 * 2 + 2 * 2 + 1 + 2);
}

}  // namespace
}  // namespace velmora::testing
