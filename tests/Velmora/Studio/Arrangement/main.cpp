#include <QApplication>
#include <gmock/gmock.h>

#include "Velmora/Theme/Theme.h"

int main(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, arguments);
  velmora::Theme::install();
  ::testing::InitGoogleMock(&count, arguments);
  return RUN_ALL_TESTS();
}
