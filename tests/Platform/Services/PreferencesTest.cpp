#include <QFile>
#include <gtest/gtest.h>

#include "Platform/Services/Preferences.h"
#include "tests/support/TemporaryFolder.h"

namespace platform {
namespace {

TEST(PreferencesTest, KeepsValuesAndReadsForeignOnesAsTheStandard) {
  const velmora::testing::TemporaryFolder folder;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(folder.path()));
  {
    Preferences preferences;
    preferences.set("told", true);
    preferences.set("volume", 0.1);
    preferences.set("place", QString("Zürich, 100 %"));
    EXPECT_TRUE(preferences.boolean("told"));
  }
  QFile file(QString::fromStdString(folder / "Orrin/Velmora.conf"));
  ASSERT_TRUE(file.open(QIODevice::Append));
  file.write("list=a, b\nendless=inf\n");
  file.close();

  const Preferences preferences;
  EXPECT_TRUE(preferences.boolean("told"));
  EXPECT_EQ(preferences.number("volume", 1), 0.1);
  EXPECT_EQ(preferences.text("place"), "Zürich, 100 %");
  for (const char* key : {"missing", "place", "volume", "list"})
    EXPECT_TRUE(preferences.boolean(key, true)) << key;
  for (const char* key : {"missing", "place", "told", "list", "endless"})
    EXPECT_EQ(preferences.number(key, 7), 7) << key;
  for (const char* key : {"missing", "list"}) EXPECT_EQ(preferences.text(key, "standard"), "standard") << key;
}

}  // namespace
}  // namespace platform
