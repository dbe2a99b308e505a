#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "Velmora/Online/Account/AccountCoding.h"
#include "Velmora/Online/Community/CommunityCoding.h"

namespace velmora {
namespace {

const std::string id = R"("00000000-0000-0000-0000-00000000002a")";
const std::string creator = R"({"id":)" + id + R"(,"handle":"h","displayName":"D","bio":"b","followers":7,)" +
                            R"("following":true,"isDemo":true,"state":"pending"})";
const std::string feed = R"({"posts":[{"id":)" + id + R"(,"title":"T","caption":"c","durationMs":1999,)" +
                         R"("publishedAt":"p","creator":)" + creator +
                         R"(,"votes":3,"voted":false}],"nextPage":2})";
const std::string studio = R"({"profile":)" + creator + R"(,"posts":[{"id":)" + id +
                           R"(,"title":"T","state":"uploading"}],"blocked":[{"id":)" + id +
                           R"(,"handle":"x"}]})";

struct Answer {
  std::string json;
  std::function<void(const QByteArray&)> decode;
};
const std::vector<Answer> answers = {
    {feed, [](const QByteArray& bytes) { decodeFeed(JSONValue::parse(bytes)); }},
    {studio, [](const QByteArray& bytes) { decodeStudio(JSONValue::parse(bytes)); }},
    {creator, [](const QByteArray& bytes) { decodeCreator(JSONValue::parse(bytes)); }},
    {R"({"id":)" + id + "}", [](const QByteArray& bytes) { decodeCreated(JSONValue::parse(bytes)); }},
    {R"({"ok":true})", [](const QByteArray& bytes) { decodeOK(JSONValue::parse(bytes)); }},
};

std::string faultOf(const Answer& answer, const std::string& json) {
  try {
    answer.decode(QByteArray::fromStdString(json));
    return "";
  } catch (const DecodingError& error) {
    return error.what();
  }
}

TEST(CommunityCodingTest, AsksForEveryFieldButTheOptionalOnes) {
  for (const Answer& answer : answers) {
    EXPECT_EQ(faultOf(answer, answer.json), "");
    for (std::size_t at = answer.json.find("\":"); at != std::string::npos;
         at = answer.json.find("\":", at + 1)) {
      const std::size_t start = answer.json.rfind('"', at - 1) + 1;
      const std::string key = answer.json.substr(start, at - start);
      const bool isOptional = key == "isDemo" || key == "state" || key == "profile" || key == "nextPage";
      const bool isPreviewsState = key == "state" && answer.json.compare(at, 12, "\":\"uploading") == 0;
      EXPECT_EQ(faultOf(answer, std::string(answer.json).insert(at, "_")).empty(),
                isOptional && !isPreviewsState)
          << key << " in " << answer.json;
    }
  }
  const CommunityPost post = decodeFeed(JSONValue::parse(QByteArray::fromStdString(feed))).posts.at(0);
  EXPECT_EQ(post.creator.id.text(), "00000000-0000-0000-0000-00000000002A");
  EXPECT_TRUE(post.durationMs == 1999 && post.votes == 3 && !post.voted && post.creator.following);
  EXPECT_EQ(*post.creator.isDemo, true);
}

TEST(CommunityCodingTest, EndsMutatedAnswersWithARecordOrOneLine) {
  std::mt19937 random(20);
  const auto below = [&random](std::size_t count) { return random() % std::max<std::size_t>(1, count); };
  const std::string tokens[] = {"null", "1e999", "-9223372036854775809", "\"\\ud800\"", "[[[[", "\xff",
                                "{}",   "0.5"};
  int refused = 0;
  for (int round = 0; round < 10000; ++round) {
    const Answer& answer = answers[static_cast<std::size_t>(round) % answers.size()];
    std::string json = answer.json;
    for (std::size_t edits = 1 + below(4); edits-- > 0;) {
      const std::size_t at = below(json.size());
      switch (below(4)) {
        case 0:
          json.replace(at, 1, 1, static_cast<char>(below(256)));
          break;
        case 1:
          json.erase(at, below(12));
          break;
        case 2:
          json.insert(at, json.substr(below(json.size()), below(30)));
          break;
        default:
          json.replace(at, below(6), tokens[below(std::size(tokens))]);
      }
    }
    const std::string fault = faultOf(answer, json);
    EXPECT_EQ(fault.find('\n'), std::string::npos);
    refused += !fault.empty();
    decodeErrorBody(QByteArray::fromStdString(json));
  }
  EXPECT_GT(refused, 5000);
  EXPECT_LT(refused, 9990);
}

}  // namespace
}  // namespace velmora
