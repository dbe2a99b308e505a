#include <QCoreApplication>
#include <QCoroTask>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Tasks/Cancelled.h"
#include "Platform/Tasks/ResultOf.h"
#include "Platform/Tasks/SerialWorker.h"

namespace platform {
namespace {

using namespace std::chrono_literals;

class SerialWorkerTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { application_ = std::make_unique<QCoreApplication>(count_, arguments_); }
  static void TearDownTestSuite() { application_.reset(); }

 private:
  static inline int count_ = 1;
  static inline char name_[] = "test";
  static inline char* arguments_[] = {name_, nullptr};
  static inline std::unique_ptr<QCoreApplication> application_;
};

/// A gate that holds the worker's thread.
struct Gate {
  std::binary_semaphore semaphore{0};
  void pass() { semaphore.acquire(); }
  void open() { semaphore.release(); }
};

TEST_F(SerialWorkerTest, GivesValuesFromAnotherThread) {
  SerialWorker worker;
  const std::string text = "a text that is too long for a short string";
  EXPECT_EQ(resultOf(worker.run([text] { return text; })), text);
  EXPECT_NE(resultOf(worker.run([] { return std::this_thread::get_id(); })), std::this_thread::get_id());
  EXPECT_EQ(resultOf(worker.run([] { return std::this_thread::get_id(); })),
            resultOf(worker.run([] { return std::this_thread::get_id(); })));
  resultOf(worker.run([] {}));
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
  EXPECT_EQ(resultOf(worker.run([] { return 7; })), 7);
}

TEST_F(SerialWorkerTest, WorksInTheOrderOfIssue) {
  SerialWorker worker;
  Gate gate;
  std::vector<int> order;
  auto held = worker.run([&gate] { gate.pass(); });
  for (int i = 0; i < 100; ++i) worker.run([&order, i] { order.push_back(i); });
  auto last = worker.run([&order] { return order; });
  gate.open();
  const std::vector<int> seen = resultOf(std::move(last));
  ASSERT_EQ(seen.size(), 100U);
  EXPECT_TRUE(std::ranges::is_sorted(seen));
}

QCoro::Task<std::string> twice(SerialWorker& worker, std::string word) {
  auto doubling = [word] { return word + word; };
  const std::string doubled = co_await worker.run(doubling);
  auto exclaiming = [doubled] { return doubled + "!"; };
  co_return co_await worker.run(exclaiming);
}

TEST_F(SerialWorkerTest, ResumesCoroutinesThatWait) {
  SerialWorker worker;
  Gate gate;
  auto held = worker.run([&gate] { gate.pass(); });
  auto task = twice(worker, "la");
  EXPECT_FALSE(task.isReady());
  gate.open();
  EXPECT_EQ(resultOf(std::move(task)), "lala!");
}

TEST_F(SerialWorkerTest, KeepsTheEventLoopAliveMeanwhile) {
  SerialWorker worker;
  Gate gate;
  int ticks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    if (++ticks == 5) gate.open();
  });
  timer.start(1ms);
  resultOf(worker.run([&gate] { gate.pass(); }));
  EXPECT_GE(ticks, 5);
}

TEST_F(SerialWorkerTest, DoesDroppedWorkAndSwallowsItsException) {
  SerialWorker worker;
  bool isDone = false;
  worker.run([&isDone] {
    isDone = true;
    throw std::runtime_error("unheard");
  });
  resultOf(worker.run([] {}));
  EXPECT_TRUE(isDone);
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
