#include <cmath>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <rapidcheck/gtest.h>

#include "VelmoraCore/Song/JSONScalar.h"
#include "VelmoraCore/Song/SongHash.h"
#include "VelmoraCore/Song/SongJSON.h"
#include "VelmoraCore/Song/SongValidation.h"
#include "fuzz/SongFuzzCase.h"
#include "tests/support/Files.h"
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
  song.tracks = {song.tracks[1]};
  song.tracks.write()[0].pan = -0.0F;
  song.tracks.write()[0].fx.delayMix = 0.1F;
  song.tracks.write()[0].selectedPatternID = uuid(12);
  song.patterns = {song.patterns[1]};
  song.patterns.write()[0].notes = {{uuid(21), 36, 0, 1e-7, 127}};
  song.clips = {{uuid(31), uuid(2), ClipSource::pattern(uuid(12)), 0, 8}};
  song.audioAssets = {};
  song.loop.reset();
  EXPECT_EQ(encodeSong(song), contentOf(VELMORA_SONG_GOLDEN));
}

RC_GTEST_PROP(SongJSON, readsBackWhatItWrote, ()) {
  const Song song = *validSongs();
  const std::string text = encodeSong(song);
  const Song read = decodeSong(text);
  RC_ASSERT(read == song);
  RC_ASSERT(encodeSong(read) == text);
  RC_ASSERT(hashValue(read) == hashValue(song));
}

TEST(SongJSON, RoundsFloatsOnceInAnyLocale) {
  // Just above the middle of two floats, though not as a double.
  const std::string text =
      replaced(minimal, "\"masterVolume\": 1", "\"masterVolume\": 1.00000005960464477539062500001");
  EXPECT_EQ(decodeSong(text).masterVolume, std::nextafter(1.0F, 2.0F));
  // The parser writes decimals with the point of the C locale, a comma in some.
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
  const std::string sample = encodeSong(sampleSong()), drums = "\"drums\": {}", pitch = "\"pitch\": 36";
  const std::string deep = std::string(100000, '[') + std::string(100000, ']');
  const std::pair<std::string, std::string> rows[] = {
      {"00000000001F", "00000000001f"},
      {pitch, "\"pitch\": 36.0"},
      {pitch, "\"pitch\": 0.36e2"},
      {"\"frameCount\": 88200", "\"frameCount\": 8.82e4"},
      {drums, "\"drums\": {\"_0\": [1, {}]}"},
      {"\"bpm\": 128", "\"bpm\": 1, \"bpm\": 128"},
      {drums, drums + ", " + drums},
      {"\"notes\": [",
       R"("notes": [{"pitch": 1, "startBeat": 0, "durationBeats": 1, "velocity": 1}], "notes": [)"},
      {"\"loop\": {", "\"loop\": null, \"loop\": {"},
      {"\"bpm\"", "\"extra\": {\"id\": [null, {\"id\": 1}]}, \"bpm\""},
      {pitch, pitch + ", \"extra\": " + deep},
  };
  for (const auto& [from, to] : rows)
    EXPECT_EQ(decodeSong(replaced(sample, from, to)), sampleSong()) << to.substr(0, 99);

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
  const std::string sample = encodeSong(sampleSong()), drums = "\"drums\": {}", frames = "\"frameCount\": ";
  const std::string velocity = "\"velocity\" in note 2 of pattern 1 must be an integer from 0 to 255.";
  const std::string count = "\"frameCount\" in audio asset 1 must be an integer.";
  const std::string noCase = "\"kind\" in track 1: Invalid number of keys found, expected one.";
  const auto invalidAt = [](int line, int column) {
    return "The document isn't valid JSON (line " + std::to_string(line) + ", column " +
           std::to_string(column) + ").";
  };
  const std::pair<std::string, std::string> texts[] = {
      {"", invalidAt(1, 1)},
      {"null", "The song must be an object."},
      {"[]", "The song must be an object."},
      {std::string(100000, '['), "The song must be an object."},
      {"{\n  \"bpm\": NaN}", invalidAt(2, 10)},
      {minimal + "x", invalidAt(2, 67)},
      {minimal + std::string(1, '\0'), invalidAt(2, 67)},
      {replaced(minimal, "\"\"", "\"\xC3\""), invalidAt(1, 58)},
      {replaced(minimal, "\"\"", R"("\ud800")"), invalidAt(1, 63)},
      {replaced(minimal, "120", "1e999"), "A number in the document is too large (line 1, column 71)."},
      {replaced(minimal, "\"bpm\": 120, ", ""), "\"bpm\" is missing in the song."},
      {replaced(minimal, "\"tracks\": []", "\"tracks\": {}"), "\"tracks\" in the song must be an array."},
      {replaced(minimal, "\"clips\": []", "\"clips\": [7]"), "Clip 1 must be an object."},
      {replaced(minimal, ": 1}", ": 1e39}"), "\"masterVolume\" in the song must be a 32-bit number."},
      {replaced(sample, "\"velocity\": 72", "\"velocity\": 256"), velocity},
      {replaced(sample, "\"velocity\": 72", "\"velocity\": -1"), velocity},
      {replaced(sample, frames + "88200", frames + "9223372036854775808"), count},
      {replaced(sample, frames + "88200", frames + "0.5"), count},
      {replaced(sample, "\"delayMix\": 0", "\"x\": 0"), "\"delayMix\" is missing in \"fx\" in track 1."},
      {replaced(sample, "\"endBeat\": 8", "\"endBeat\": \"8\""), "\"endBeat\" in \"loop\" must be a number."},
      {replaced(sample, "\"blue\"", "\"mauve\""), "\"color\" in track 1 must be the name of a track color."},
      {replaced(sample, "\"bass\"", "\"Bass\""),
       "\"_0\" in \"synth\" in \"kind\" in track 2 must be the name of a synthesizer preset."},
      {replaced(sample, drums, drums + ", \"audio\": {}"), noCase},
      {replaced(sample, drums, drums + ", \"x\": 1"), noCase},
      {replaced(sample, drums, ""), noCase},
      {replaced(sample, drums, "\"bells\": {}"), "\"kind\" in track 1 holds an unknown case."},
      {replaced(sample, "00000000001F", "00000000001G"), "\"id\" in clip 1 must be a UUID."},
  };
  for (const auto& [text, error] : texts) EXPECT_EQ(errorOf(text), error) << text.substr(0, 200);
  for (std::size_t length = 0; length < sample.size(); ++length)
    ASSERT_THAT(errorOf(std::string_view(sample).substr(0, length)), ::testing::EndsWith("."));
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

// A file's name tells how far its document comes.
TEST(SongCorpus, EveryFileComesAsFarAsItsNameTells) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(VELMORA_SONG_CORPUS)) {
    const std::string name = entry.path().filename().string();
    const SongFuzzOutcome expected = name.starts_with("valid-")     ? SongFuzzOutcome::valid
                                     : name.starts_with("invalid-") ? SongFuzzOutcome::invalid
                                                                    : SongFuzzOutcome::undecodable;
    EXPECT_EQ(songFuzzCase(contentOf(entry.path())), expected) << name;
    EXPECT_LT(entry.file_size(), 4096U) << name;
    ++count;
  }
  EXPECT_GE(count, 10);
}

}  // namespace
}  // namespace velmora::testing
