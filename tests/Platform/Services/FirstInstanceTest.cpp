#include <QCoreApplication>
#include <QDeadlineTimer>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>

#include "Platform/Services/FirstInstance.h"
#include "tests/support/TemporaryFolder.h"

namespace platform {
namespace {

TEST(FirstInstanceTest, HoldsTheFolderUntilItEndsAndHearsOthers) {
  int count = 1;
  char name[] = "test";
  char* arguments[] = {name, nullptr};
  const QCoreApplication application(count, arguments);
  const velmora::testing::TemporaryFolder folder;
  const auto below = folder / "not there yet";

  std::optional<FirstInstance> first(below);
  int calls = 0;
  first->setOnCall([&] { ++calls; });
  ASSERT_TRUE(first->isFirst());
  {
    const FirstInstance second(below);
    EXPECT_FALSE(second.isFirst());
    second.callFirst();
  }
  const QDeadlineTimer deadline(10000);
  while (calls == 0 && !deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  EXPECT_EQ(calls, 1);

  first.reset();
  EXPECT_TRUE(FirstInstance(below).isFirst());
  std::ofstream(folder / "file") << "no folder";
  EXPECT_TRUE(FirstInstance(folder / "file").isFirst());
}

}  // namespace
}  // namespace platform
