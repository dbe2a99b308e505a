#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>

#include "VelmoraCore/Song/SongFields.h"
#include "VelmoraCore/Song/SongJSON.h"
#include "VelmoraCore/Song/SongValidation.h"
#include "tests/support/Songs.h"

namespace velmora::testing {
namespace {

using nlohmann::json;

bool isValid(const Song& song) {
  try {
    validateSong(song);
    return true;
  } catch (const InvalidProject& error) {
    EXPECT_STREQ(error.what(), "This project contains invalid or unsupported data.");
    return false;
  }
}

/// The sample song's document with a value at a place; an object changes only the fields that it holds.
Song songWith(const std::string& place, const json& value) {
  json document = json::parse(encodeSong(sampleSong()));
  json& changed = document[json::json_pointer(place)];
  value.is_object() ? changed.update(value) : void(changed = value);
  return decodeSong(document.dump());
}

json id(std::uint8_t number) { return uuid(number).text(); }
json source(const char* kind, std::uint8_t number) { return {{kind, {{"_0", id(number)}}}}; }

TEST(SongValidation, HoldsEachFieldToItsRule) {
  const json sample = json::parse(encodeSong(sampleSong()));
  const struct {
    const char* place;
    std::vector<json> refused, accepted;
  } rows[] = {
      {"/name", {}, {"", "Sample"}},
      {"/bpm", {39.9, 300.1}, {40, 300}},
      {"/masterVolume", {-0.01, 1.01}, {0, 1}},
      {"/tracks/-", {sample["tracks"][0]}, {}},
      {"/patterns/-", {sample["patterns"][0]}, {}},
      {"/clips/-", {sample["clips"][0]}, {}},
      {"/audioAssets/-", {sample["audioAssets"][0]}, {}},
      {"/tracks/0/name", {}, {""}},
      {"/tracks/0/volume", {-0.01, 1.01}, {0, 1}},
      {"/tracks/0/pan", {-1.01, 1.01}, {-1, 1}},
      {"/tracks/0/fx/lowGainDB", {-12.1, 12.1}, {-12, 12}},
      {"/tracks/0/fx/midGainDB", {-12.1, 12.1}, {-12, 12}},
      {"/tracks/0/fx/highGainDB", {-12.1, 12.1}, {-12, 12}},
      {"/tracks/0/fx/delayMix", {-0.01, 1.01}, {0, 1}},
      {"/tracks/0/fx/reverbMix", {-0.01, 1.01}, {0, 1}},
      {"/tracks/0/selectedPatternID", {id(77), id(12)}, {nullptr}},
      {"/patterns/1/trackID", {id(77)}, {id(1)}},
      {"/patterns/1/lengthBeats", {0.2, 16384.1}, {0.25, 16384}},
      {"/patterns/1/notes", {}, {sample["patterns"][0]["notes"]}},  // ids of notes are a pattern's own
      {"/patterns/0/notes/1/id", {id(21)}, {}},
      {"/patterns/0/notes/1/pitch", {128}, {0, 127}},
      {"/patterns/0/notes/1/velocity", {0, 128}, {1, 127}},
      {"/patterns/0/notes/1/startBeat", {-0.01}, {0, 3.75}},
      {"/patterns/0/notes/1/durationBeats", {0, 3.50001}, {3.5000001}},
      {"/patterns/0/notes/1", {{{"startBeat", 4}, {"durationBeats", 1e-9}}}, {}},
      {"/clips/0/startBeat", {-0.01, 16376.1}, {0, 16376}},
      {"/clips/0/lengthBeats", {0}, {0.01}},
      {"/clips/0/source", {source("pattern", 77), source("pattern", 12)}, {}},
      {"/clips/1/trackID", {id(77), id(1)}, {}},  // the second is of drums
      {"/clips/1/source", {source("audio", 77)}, {}},
      {"/audioAssets/0/fileName",
       {"audio/take.caf", "take.caf/", "/", std::string("..\0.caf", 7), "", ".", ".."},
       {"..caf"}},
      {"/audioAssets/0/sampleRate", {0}, {1}},
      {"/audioAssets/0/frameCount", {-1}, {0}},
      {"/audioAssets/0/channelCount", {0, 3}, {1, 2}},
      {"/loop", {{{"startBeat", -0.01}}, {{"endBeat", 16384.1}}, {{"startBeat", 8}}}, {nullptr}},
      {"/loop", {}, {{{"startBeat", 0.5}, {"endBeat", 16384}}}},
  };
  for (const auto& row : rows) {
    for (const json& value : row.refused)
      EXPECT_FALSE(isValid(songWith(row.place, value))) << row.place << " " << value;
    for (const json& value : row.accepted)
      EXPECT_TRUE(isValid(songWith(row.place, value))) << row.place << " " << value;
  }
}

// Fills a list with copies of its last record under new ids.
template <class Record>
void fill(SharedList<Record>& list, std::size_t size) {
  std::vector<Record>& items = list.write();
  Record copy = items.back();
  for (; items.size() < size; items.push_back(copy)) copy.id = UUID::random();
}

TEST(SongValidation, CountsRecords) {
  const auto isValidWith = [](std::size_t tracks, std::size_t patterns, std::size_t clips,
                              std::size_t notes) {
    Song song = sampleSong();
    fill(song.tracks, tracks);
    fill(song.patterns, patterns);
    fill(song.clips, clips);
    fill(song.patterns.write()[0].notes, notes);
    fill(song.audioAssets, 2);  // of the same file
    return isValid(song);
  };
  EXPECT_TRUE(isValidWith(128, 4096, 16384, 65536));
  EXPECT_FALSE(isValidWith(129, 0, 0, 0));
  EXPECT_FALSE(isValidWith(0, 4097, 0, 0));
  EXPECT_FALSE(isValidWith(0, 0, 16385, 0));
  EXPECT_FALSE(isValidWith(0, 0, 0, 65537));
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
  int count = 1;
  for (int index = 0; index < count; ++index) {
    for (const double number : {std::nan(""), infinity, -infinity}) {
      Song broken = sampleSong();
      count = 0;
      const auto visit = [&]<class Float>(Float& value) {
        if (count++ == index) value = static_cast<Float>(number);
      };
      forEachFloat(broken, visit);
      EXPECT_FALSE(isValid(broken)) << "number " << index << " is " << number;
    }
  }
  EXPECT_EQ(count, 2 + 3 * 7 + 2 + 2 * 2 + 2 * 2 + 1 + 2);
}

}  // namespace
}  // namespace velmora::testing
