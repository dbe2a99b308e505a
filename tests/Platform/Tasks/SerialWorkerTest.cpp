#include <QCoroTask>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <optional>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Tasks/Cancelled.h"
#include "Platform/Tasks/ResultOf.h"
#include "Platform/Tasks/SerialWorker.h"
#include "tests/support/EventLoopTest.h"

namespace platform {
namespace {

using namespace std::chrono_literals;

using SerialWorkerTest = velmora::testing::EventLoopTest;

TEST_F(SerialWorkerTest, GivesValuesFromOneOtherThread) {
  SerialWorker worker;
  const auto threadID = [] { return std::this_thread::get_id(); };
  const std::string text = "a text that is too long for a short string";
  EXPECT_EQ(resultOf(worker.run([text] { return text; })), text);
  EXPECT_NE(resultOf(worker.run(threadID)), threadID());
  EXPECT_EQ(resultOf(worker.run(threadID)), resultOf(worker.run(threadID)));
}

TEST_F(SerialWorkerTest, GivesTheExceptionAsItWasThrownAndGoesOn) {
  SerialWorker worker;
  try {
    resultOf(worker.run([]() -> int { throw std::out_of_range("far out"); }));
    ADD_FAILURE() << "nothing thrown";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "far out");
  }
  EXPECT_THROW(resultOf(worker.run([] { throw Cancelled(); })), Cancelled);
  bool isDone = false;
  worker.run([&isDone] {
    isDone = true;
    throw std::runtime_error("unheard");
  });
  resultOf(worker.run([] {}));
  EXPECT_TRUE(isDone) << "work is done though nobody waits for it";
}

QCoro::Task<std::string> twice(SerialWorker& worker, std::string word) {
  auto doubling = [word] { return word + word; };
  const std::string doubled = co_await worker.run(doubling);
  auto exclaiming = [doubled] { return doubled + "!"; };
  co_return co_await worker.run(exclaiming);
}

TEST_F(SerialWorkerTest, WorksInTheOrderOfIssueWhileTheEventLoopRuns) {
  SerialWorker worker;
  std::binary_semaphore gate{0};
  std::vector<int> order;
  int ticks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    if (++ticks == 5) gate.release();
  });
  timer.start(1ms);
  auto held = worker.run([&gate] { gate.acquire(); });
  for (int i = 0; i < 100; ++i) worker.run([&order, i] { order.push_back(i); });
  auto task = twice(worker, "la");
  auto last = worker.run([&order] { return order; });
  EXPECT_FALSE(task.isReady());
  const std::vector<int> seen = resultOf(std::move(last));
  EXPECT_GE(ticks, 5);
  EXPECT_TRUE(seen.size() == 100 && std::ranges::is_sorted(seen));
  EXPECT_EQ(resultOf(std::move(task)), "lala!");
}

TEST_F(SerialWorkerTest, WaitsForIssuedWorkWhenItIsDestroyed) {
  int done = 0;
  auto worker = std::make_optional<SerialWorker>();
  auto first = worker->run([&done] { return ++done; });
  auto second = worker->run([&done] { return ++done; });
  worker.reset();
  EXPECT_EQ(done, 2);
  EXPECT_EQ(resultOf(std::move(first)) + resultOf(std::move(second)), 3);
}

}  // namespace
}  // namespace platform
