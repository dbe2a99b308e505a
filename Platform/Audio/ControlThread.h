#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <utility>

namespace platform {

/// A thread for calls that may hang, such as those to a sound server that doesn't answer.
///
/// Jobs run one after the other; whoever gave one may look for its result, wait for it with a limit, or drop
/// it. Jobs must own what they use, or be followed by a job that does, since a thread that hangs at the end
/// is left to itself.
class ControlThread {
 public:
  static constexpr std::chrono::milliseconds patienceAtEnd{1000};

  ControlThread();
  /// Waits for the jobs that were given, for `patienceAtEnd` at most.
  ~ControlThread();
  ControlThread(const ControlThread&) = delete;
  ControlThread& operator=(const ControlThread&) = delete;

  template <class Job, class Value = std::invoke_result_t<Job&>>
  std::future<Value> run(Job job) {
    std::packaged_task<Value()> task(std::move(job));
    std::future<Value> result = task.get_future();
    add(std::packaged_task<void()>([task = std::move(task)]() mutable { task(); }));
    return result;
  }

 private:
  struct State {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::packaged_task<void()>> jobs;
    bool isEnding = false;
    bool hasEnded = false;
  };

  static void serve(State& state);
  void add(std::packaged_task<void()> job);

  std::shared_ptr<State> state_ = std::make_shared<State>();  // also the thread's, which may outlive this
  std::thread thread_;
};

/// Whether there is a result to take. Never waits.
template <class Value>
bool isReady(const std::future<Value>& result) {
  return result.valid() && result.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

}  // namespace platform
