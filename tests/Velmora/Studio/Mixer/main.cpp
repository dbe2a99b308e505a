#include <QApplication>
#include <gmock/gmock.h>

int main(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(count, arguments);
  ::testing::InitGoogleMock(&count, arguments);
  return RUN_ALL_TESTS();
}
