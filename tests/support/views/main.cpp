// The program round every test of views: no screen, no settings but its own, one language.

#include <QApplication>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include "Velmora/Theme/Theme.h"

int main(int count, char** arguments) {
  const QTemporaryDir settings;
  qputenv("XDG_CONFIG_HOME", settings.path().toUtf8());
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("LC_ALL", "en_US.UTF-8");
  const QApplication application(count, arguments);
  velmora::Theme::install();
  ::testing::InitGoogleMock(&count, arguments);
  return RUN_ALL_TESTS();
}
