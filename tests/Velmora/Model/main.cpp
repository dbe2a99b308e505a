#include <QCoreApplication>
#include <gmock/gmock.h>

int main(int count, char** arguments) {
  const QCoreApplication application(count, arguments);
  ::testing::InitGoogleMock(&count, arguments);
  return RUN_ALL_TESTS();
}
