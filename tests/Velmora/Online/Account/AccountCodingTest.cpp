#include <algorithm>
#include <gmock/gmock.h>
#include <random>

#include "Velmora/Online/Account/AccountCoding.h"
#include "tests/Velmora/Online/Account/OnlineTest.h"

namespace velmora {
namespace {

const QByteArray full =
    QByteArray(R"({"customer": {"id": "11111111-2222-3333-4444-5555abcdef00", "username": "ann",
  "email": "a@b.test", "displayName": "Ann \u00e9"}, "sessionToken": "t", "expiresAt": " 1 ", "appleUserID": "x"})");
const QByteArray least =
    QByteArray(R"({"customer": {"id": "11111111-2222-3333-4444-5555ABCDEF00", "email": null},
  "sessionToken": "", "expiresAt": ""})");

VelmoraSession session(const QByteArray& json) { return decodeSession(JSONValue::parse(json)); }

TEST(AccountCodingTest, KeepsASessionAsItIs) {
  const VelmoraCustomer ann{*UUID::parse(testing::customerID), "ann", "a@b.test", "Ann é"};
  EXPECT_EQ(session(full), (VelmoraSession{ann, "t", " 1 ", "x"}));
  for (const QByteArray& json : {full, least})
    EXPECT_EQ(session(encodeSession(session(json))), session(json));
  EXPECT_EQ(encodeSession(session(least)), R"({"customer":{"id":"11111111-2222-3333-4444-5555ABCDEF00"},)"
                                           R"("expiresAt":"","sessionToken":""})");
}

TEST(AccountCodingTest, NamesWhatItCannotRead) {
  const auto decode = [](const JSONValue& json) {
    const auto entry = [](const JSONValue& each) { return each["n"].integer(); };
    return json["a"].list(entry);
  };
  const struct {
    const char* json;
    const char* fault;
  } rows[] = {{R"({"b": 1})", "\"a\" is missing."},
              {R"({"a": null})", "\"a\" is missing."},
              {R"({"a": {}})", "\"a\" isn't a list."},
              {R"({"a": [{"n": 1}, {"n": 1.5}]})", "\"a[1].n\" isn't a whole number."},
              {R"({"a": [{"n": 9223372036854775808}]})", "\"a[0].n\" isn't a whole number."},
              {R"({"a": [{"n": 1e999}]})", "it holds a number that is too large."},
              {R"({"a": [7]})", "\"a[0]\" isn't an object."},
              {"7", "it isn't an object."},
              {"{\"a\": \"\xff\"}", "it isn't valid JSON (byte 8)."}};
  for (const auto& row : rows)
    EXPECT_THAT([&] { decode(JSONValue::parse(row.json, "It")); },
                ::testing::ThrowsMessage<DecodingError>(std::string("It can't be read: ") + row.fault));
  EXPECT_THAT(decode(JSONValue::parse(R"({"a": [{"n": -5}, {"n": 2e3}, {"n": 9223372036854775807}]})")),
              ::testing::ElementsAre(-5, 2000, INT64_MAX));
  EXPECT_THROW(JSONValue::parse(QByteArray(4 << 20, '[')), DecodingError);
}

/// Hostile answers either decode or fail in one line of our own words.
TEST(AccountCodingTest, SurvivesTenThousandMutations) {
  const QByteArray seeds[] = {full,
                              least,
                              R"({"customer": {"id": "11111111-2222-3333-4444-5555abcdef00"}})",
                              R"({"ok": true})",
                              R"({"error": "No\n"})",
                              "null"};
  const QByteArray pieces[] = {"null",        "[",
                               "{",           "}",
                               "\"",          ",",
                               "1e999",       "-9223372036854775809",
                               "\"\\ud800\"", QByteArray(1, '\0'),
                               "\xff",        "\xc0\x80",
                               R"({"id":)",   "true",
                               "\\u0000",     ":"};
  std::mt19937 random(7);
  const auto below = [&](qsizetype limit) {
    return static_cast<qsizetype>(random() % static_cast<unsigned>(limit));
  };
  const std::function<void(const JSONValue&)> decoders[] = {decodeSession, decodeMe, decodeOK};
  int decoded = 0, refused = 0;
  for (int i = 0; i < 10000; ++i) {
    QByteArray json = seeds[below(std::size(seeds))];
    for (qsizetype changes = below(3); changes >= 0; --changes) {
      const qsizetype at = below(json.size() + 1), length = std::min(below(12), json.size() - at);
      const qsizetype kind = below(4);
      if (kind == 0) json.replace(at, length, pieces[below(std::size(pieces))]);
      if (kind == 1) json.remove(at, length);
      if (kind == 2) json.insert(at, json.mid(below(json.size() + 1), length));
      if (kind == 3 && at < json.size()) json[at] = static_cast<char>(json[at] ^ 1 << below(8));
    }
    decodeErrorBody(json);
    for (const auto& decode : decoders) {
      try {
        decode(JSONValue::parse(json));
        ++decoded;
      } catch (const DecodingError& error) {
        const std::string line = error.what();
        ASSERT_TRUE(line.starts_with("The answer of the service can't be read: ") && line.ends_with('.'))
            << line;
        ASSERT_TRUE(std::ranges::all_of(line, [](char c) { return c >= ' ' && c <= '~'; })) << line;
        ++refused;
      }
    }
  }
  EXPECT_GT(decoded, 500);
  EXPECT_GT(refused, 10000);
}

}  // namespace
}  // namespace velmora
