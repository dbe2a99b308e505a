#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace platform {

/// Threads that share the work of each block. They stay from block to block and wait briefly awake, then
/// asleep; the caller works along, and each takes the next piece by an atomic index. For rendering offline
/// only: `run` may wait.
class WorkerTeam {
 public:
  /// `threadCount` counts the caller, so one thread fewer is started; below 1 counts as 1.
  explicit WorkerTeam(int threadCount);
  ~WorkerTeam();
  WorkerTeam(const WorkerTeam&) = delete;
  WorkerTeam& operator=(const WorkerTeam&) = delete;

  int threadCount() const noexcept { return static_cast<int>(threads_.size()) + 1; }

  /// Calls `job(i)` once for every i in 0..<count, on any of the threads, and returns when all calls have
  /// ended. One caller at a time; the job must not throw.
  template <typename Job>
  void run(int count, const Job& job) noexcept {
    runJob(
        count, [](const void* context, int i) { (*static_cast<const Job*>(context))(i); }, &job);
  }

 private:
  using Call = void (*)(const void* context, int index);

  void runJob(int count, Call call, const void* context) noexcept;
  void work() noexcept;
  void threadBody() noexcept;

  Call call_ = nullptr;
  const void* context_ = nullptr;
  int count_ = 0;
  alignas(64) std::atomic<int> nextIndex_{0};
  alignas(64) std::atomic<int> round_{0};  // one more for each run
  alignas(64) std::atomic<int> busyThreads_{0};
  bool isEnding_ = false;  // written before a round begins, read after
  std::vector<std::thread> threads_;
};

}  // namespace platform
