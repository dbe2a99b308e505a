#include <QList>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "Velmora/Online/CommunityViews/ServiceText.h"

namespace velmora {
namespace {

RC_GTEST_PROP(ServiceTextTest, ALineIsOneBoundedLineWhateverComes, (const std::string& bytes)) {
  const int times = *rc::gen::inRange(1, 60);
  std::string text;
  for (int n = 0; n < times; ++n) text += bytes;
  const QString line = ServiceText::line(text);
  RC_ASSERT(line.size() <= ServiceText::longestName);
  for (const char32_t character : line.toUcs4()) {
    const auto category = QChar::category(character);
    RC_ASSERT(category != QChar::Other_Control && category != QChar::Separator_Line);
  }
}

TEST(ServiceTextTest, CountsCharactersAsAReaderDoes) {
  const struct {
    const char* character;
    int units;
  } rows[] = {{"a", 1},
              {"e\u0301", 2},
              {"\U0001F941", 2},
              {"\U0001F469\u200D\U0001F3A4", 5},
              {"\U0001F1F8\U0001F1EA", 4}};
  for (const auto& [character, units] : rows) {
    const QString text = QString(character).repeated(80);
    ASSERT_EQ(text.size(), 80 * units);
    EXPECT_TRUE(holdsAtMost(80, text)) << character;
    EXPECT_FALSE(holdsAtMost(80, text + character)) << character;
  }
  EXPECT_TRUE(holdsAtMost(0, ""));
}

TEST(ServiceTextTest, KeepsTheLinesOfAParagraph) {
  EXPECT_EQ(ServiceText::paragraph(" one \r\n\n\ntwo\tbars\u200D "), "one\ntwo bars\u200D");
  EXPECT_EQ(ServiceText::line("one \r\n\n\ntwo"), "one two");
  EXPECT_EQ(ServiceText::handle(std::string(100'000, 'x')), "@" + QString(23, 'x') + "…");
  EXPECT_EQ(menuText("@a&b"), "@a&&b");
}

}  // namespace
}  // namespace velmora
