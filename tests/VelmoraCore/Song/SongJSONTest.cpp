#include <bit>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <rapidcheck/gtest.h>

#include "VelmoraCore/Song/JSONScalar.h"
#include "VelmoraCore/Song/SongHash.h"
#include "VelmoraCore/Song/SongJSON.h"
#include "VelmoraCore/Song/SongValidation.h"
#include "tests/support/Songs.h"

namespace velmora::testing {
namespace {

using nlohmann::json;

/// The error that a text gives, or nothing.
std::string errorOf(std::string_view text) {
  try {
    decodeSong(text);
    return "";
  } catch (const DecodingError& error) {
    return error.what();
  }
}

const std::string minimal =
    R"({"id": "00000000-0000-0000-0000-000000000063", "name": "", "bpm": 120, "tracks": [],
"patterns": [], "clips": [], "audioAssets": [], "masterVolume": 1})";

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  return text.replace(text.find(from), from.size(), to);
}

TEST(SongJSON, WritesSortedKeysAndShortNumbers) {
  Song song = sampleSong();
  song.name = "Tab\t\"🥁\" \xFF";
  song.bpm = 0.1 + 0.2;
  song.tracks = {song.tracks[0], song.tracks[1]};
  song.tracks.write()[0].pan = -0.0F;
  song.tracks.write()[0].fx.delayMix = 0.1F;
  song.patterns.write()[0].notes = {{uuid(21), 36, 0, 1e-7, 127}};
  song.patterns.write().pop_back();
  song.clips.write().pop_back();
  song.audioAssets = {};
  song.loop.reset();
  const std::filesystem::path golden = VELMORA_SONG_GOLDEN;
  const std::string text = encodeSong(song);
  std::ifstream expected(golden);
  if (text == std::string(std::istreambuf_iterator<char>(expected), {})) return;
  const auto actual = std::filesystem::path(golden).replace_extension(".actual");
  std::ofstream(actual) << text;
  FAIL() << "The text differs; if it is right, rename " << actual << " to " << golden.filename();
}

RC_GTEST_PROP(SongJSON, readsBackWhatItWrote, ()) {
  const Song song = *validSongs();
  const std::string text = encodeSong(song);
  const Song read = decodeSong(text);
  RC_ASSERT(read == song);
  RC_ASSERT(encodeSong(read) == text);
  RC_ASSERT(hashValue(read) == hashValue(song));
}

RC_GTEST_PROP(SongJSON, roundsFloatsOnce, (std::uint32_t bits)) {
  const float volume = std::bit_cast<float>(bits);
  RC_PRE(std::isfinite(volume));
  Song song = sampleSong();
  song.masterVolume = volume;
  RC_ASSERT(std::bit_cast<std::uint32_t>(decodeSong(encodeSong(song)).masterVolume) == bits);
}

// Just above the middle of two floats, though not as a double.
TEST(SongJSON, DoesNotRoundFloatsTwice) {
  const std::string text =
      replaced(minimal, "\"masterVolume\": 1", "\"masterVolume\": 1.00000005960464477539062500001");
  EXPECT_EQ(decodeSong(text).masterVolume, std::nextafter(1.0F, 2.0F));
}

// The parser writes decimals with the point of the C locale, a comma in some.
TEST(SongJSON, ReadsFloatsInAnyLocale) {
  float volume = 0;
  EXPECT_TRUE(read(Decimal{-0.8e-1, "-0,8e-1"}, volume));
  EXPECT_EQ(volume, -0.08F);
}

TEST(SongJSON, HashesFieldByField) {
  Song song = sampleSong();
  Song zero = song;
  zero.tracks.write()[0].pan = -0.0F;
  EXPECT_EQ(zero, song);
  EXPECT_EQ(hashValue(zero), hashValue(song));
  song.patterns.write()[0].notes.write()[1].velocity += 1;
  EXPECT_NE(hashValue(zero), hashValue(song));
}

TEST(SongJSON, ReadsAMinimalDocument) {
  const Song song = decodeSong(minimal);
  EXPECT_NO_THROW(validateSong(song));
  EXPECT_EQ(song, (Song{.id = uuid(99), .bpm = 120, .masterVolume = 1}));
}

TEST(SongJSON, IsTolerantWhereItMayBe) {
  const std::string sample = encodeSong(sampleSong());
  const std::string deep = std::string(100000, '[') + std::string(100000, ']');
  const std::string lowerCase = replaced(sample, "00000000001F", "00000000001f");
  const std::string equal[] = {
      lowerCase,
      replaced(sample, "\"pitch\": 36", "\"pitch\": 36.0"),
      replaced(sample, "\"pitch\": 36", "\"pitch\": 0.36e2"),
      replaced(sample, "\"frameCount\": 88200", "\"frameCount\": 8.82e4"),
      replaced(sample, "\"drums\": {}", "\"drums\": {\"_0\": [1, {}]}"),
      replaced(sample, "\"bpm\": 128", "\"bpm\": 1, \"bpm\": 128"),
      replaced(sample, "\"drums\": {}", "\"drums\": {}, \"drums\": {}"),
      replaced(sample, "\"notes\": [",
               R"("notes": [{"pitch": 1, "startBeat": 0, "durationBeats": 1, "velocity": 1}], "notes": [)"),
      replaced(sample, "\"loop\": {", "\"loop\": null, \"loop\": {"),
      replaced(sample, "\"bpm\"", "\"extra\": {\"id\": [null, {\"id\": 1}]}, \"bpm\""),
      replaced(sample, "\"pitch\": 36", "\"pitch\": 36, \"extra\": " + deep),
  };
  for (const std::string& text : equal) EXPECT_EQ(decodeSong(text), sampleSong()) << text.substr(0, 4000);

  const Song cleared = decodeSong(replaced(sample, "\"masterVolume\"", "\"loop\": null, \"masterVolume\""));
  EXPECT_EQ(cleared.loop, std::nullopt);
  EXPECT_THAT(encodeSong(cleared), ::testing::Not(::testing::HasSubstr("\"loop\"")));
}

TEST(SongJSON, GivesNotesWithoutAnIDFreshOnes) {
  json document = json::parse(encodeSong(sampleSong()));
  json& notes = document["patterns"][0]["notes"];
  notes[0].erase("id");
  notes[1]["id"] = nullptr;
  const Song song = decodeSong(document.dump());
  EXPECT_NO_THROW(validateSong(song));
  EXPECT_NE(song.patterns[0].notes[0].id, UUID());
  EXPECT_NE(song.patterns[0].notes[1].id, UUID());
  EXPECT_EQ(decodeSong(encodeSong(song)), song);
}

TEST(SongJSON, NamesWhatIsWrongAndWhere) {
  const std::string sample = encodeSong(sampleSong());
  struct Row {
    std::string text;
    std::string error;
  };
  const Row rows[] = {
      {"", "The document isn't valid JSON (line 1, column 1)."},
      {"null", "The song must be an object."},
      {"[]", "The song must be an object."},
      {"{\n  \"bpm\": NaN}", "The document isn't valid JSON (line 2, column 10)."},
      {minimal + "x", "The document isn't valid JSON (line 2, column 67)."},
      {minimal + std::string(1, '\0'), "The document isn't valid JSON (line 2, column 67)."},
      {replaced(minimal, "120", "1e999"), "A number in the document is too large (line 1, column 71)."},
      {replaced(minimal, "\"bpm\": 120, ", ""), "\"bpm\" is missing in the song."},
      {replaced(minimal, "\"masterVolume\": 1", "\"masterVolume\": 1e39"),
       "\"masterVolume\" in the song must be a 32-bit number."},
      {replaced(minimal, "\"tracks\": []", "\"tracks\": {}"), "\"tracks\" in the song must be an array."},
      {replaced(minimal, "\"clips\": []", "\"clips\": [7]"), "Clip 1 must be an object."},
      {replaced(sample, "\"velocity\": 72", "\"velocity\": 256"),
       "\"velocity\" in note 2 of pattern 1 must be an integer from 0 to 255."},
      {replaced(sample, "\"velocity\": 72", "\"velocity\": -1"),
       "\"velocity\" in note 2 of pattern 1 must be an integer from 0 to 255."},
      {replaced(sample, "\"frameCount\": 88200", "\"frameCount\": 9223372036854775808"),
       "\"frameCount\" in audio asset 1 must be an integer."},
      {replaced(sample, "\"frameCount\": 88200", "\"frameCount\": 0.5"),
       "\"frameCount\" in audio asset 1 must be an integer."},
      {replaced(sample, "\"delayMix\": 0", "\"x\": 0"), "\"delayMix\" is missing in \"fx\" in track 1."},
      {replaced(sample, "\"endBeat\": 8", "\"endBeat\": \"8\""), "\"endBeat\" in \"loop\" must be a number."},
      {replaced(sample, "\"blue\"", "\"mauve\""), "\"color\" in track 1 must be the name of a track color."},
      {replaced(sample, "\"bass\"", "\"Bass\""),
       "\"_0\" in \"synth\" in \"kind\" in track 2 must be the name of a synthesizer preset."},
      {replaced(sample, "\"drums\": {}", "\"drums\": {}, \"audio\": {}"),
       "\"kind\" in track 1: Invalid number of keys found, expected one."},
      {replaced(sample, "\"drums\": {}", ""),
       "\"kind\" in track 1: Invalid number of keys found, expected one."},
      {replaced(sample, "\"drums\": {}", "\"drums\": {}, \"x\": 1"),
       "\"kind\" in track 1: Invalid number of keys found, expected one."},
      {replaced(sample, "\"drums\": {}", "\"bells\": {}"), "\"kind\" in track 1 holds an unknown case."},
      {replaced(sample, "00000000001F", "00000000001G"), "\"id\" in clip 1 must be a UUID."},
      {replaced(minimal, "\"name\": \"\"", "\"name\": \"\xC3\""),
       "The document isn't valid JSON (line 1, column 58)."},
      {replaced(minimal, "\"name\": \"\"", R"("name": "\ud800")"),
       "The document isn't valid JSON (line 1, column 63)."},
      {std::string(100000, '['), "The song must be an object."},
  };
  for (const Row& row : rows) EXPECT_EQ(errorOf(row.text), row.error) << row.text.substr(0, 200);
}

TEST(SongJSON, RefusesEveryTruncation) {
  const std::string sample = encodeSong(sampleSong());
  for (std::size_t length = 0; length < sample.size(); ++length) {
    ASSERT_THAT(errorOf(std::string_view(sample).substr(0, length)), ::testing::EndsWith("."));
  }
}

bool mayBeAbsent(const json::json_pointer& place) {
  if (place.empty()) return false;
  const std::string key = place.back();
  const std::string path = place.to_string();
  return key == "loop" || key == "selectedPatternID" || (key == "name" && path.starts_with("/audioAssets")) ||
         (key == "id" && path.find("/notes/") != std::string::npos);
}

// Every value of a document is removed, and replaced by a value of every other type.
TEST(SongJSON, RefusesEveryMissingKeyAndWrongType) {
  const json sample = json::parse(encodeSong(sampleSong()));
  const json others[] = {nullptr, true, 1, "text", json::array(), json::object()};
  int count = 0;
  const std::function<void(const json::json_pointer&)> visit = [&](const json::json_pointer& place) {
    const json value = sample[place];
    for (const json& other : others) {
      if (other.type() == value.type() || (other.is_number() && value.is_number())) continue;
      json broken = sample;
      broken[place] = other;
      const std::string error = errorOf(broken.dump());
      EXPECT_EQ(error.empty(), other.is_null() && mayBeAbsent(place)) << place << " as " << other;
      EXPECT_THAT(error, ::testing::Not(::testing::HasSubstr("json"))) << place;
      ++count;
    }
    if (!place.empty() && sample[place.parent_pointer()].is_object()) {
      json broken = sample;
      broken[place.parent_pointer()].erase(place.back());
      EXPECT_EQ(errorOf(broken.dump()).empty(), mayBeAbsent(place)) << place << " removed";
    }
    for (const auto& [key, item] : value.items()) {
      if (!value.is_structured()) break;
      visit(value.is_array() ? place / static_cast<std::size_t>(std::stoi(key)) : place / key);
    }
  };
  visit(json::json_pointer());
  EXPECT_GT(count, 400);
}

}  // namespace
}  // namespace velmora::testing
