#include "Platform/Audio/WorkerTeam.h"

#include <system_error>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace platform {
namespace {

constexpr int spinCount =
    500;  // about ten microseconds: longer than the gap between two blocks, shorter than a nap

void relax() {
#if defined(__SSE2__)
  _mm_pause();
#endif
}

/// Returns once `value` is no longer `old`.
void awaitChange(const std::atomic<int>& value, int old) noexcept {
  for (int spin = 0; spin < spinCount; ++spin) {
    if (value.load(std::memory_order_acquire) != old) return;
    relax();
  }
  value.wait(old, std::memory_order_acquire);
}

}  // namespace

WorkerTeam::WorkerTeam(int threadCount) {
  try {
    for (int i = 1; i < threadCount; ++i) threads_.emplace_back([this] { threadBody(); });
  } catch (const std::system_error&) {
    // The system gives no more threads: those that run do all the work.
  }
}

WorkerTeam::~WorkerTeam() {
  isEnding_ = true;
  round_.fetch_add(1, std::memory_order_release);
  round_.notify_all();
  for (auto& thread : threads_) thread.join();
}

void WorkerTeam::runJob(int count, Call call, const void* context) noexcept {
  call_ = call;
  context_ = context;
  count_ = count;
  nextIndex_.store(0, std::memory_order_relaxed);
  busyThreads_.store(static_cast<int>(threads_.size()), std::memory_order_relaxed);
  round_.fetch_add(1, std::memory_order_release);
  round_.notify_all();
  work();
  for (int busy = 0; (busy = busyThreads_.load(std::memory_order_acquire)) > 0;)
    awaitChange(busyThreads_, busy);
}

void WorkerTeam::work() noexcept {
  for (int i = 0; (i = nextIndex_.fetch_add(1, std::memory_order_relaxed)) < count_;) call_(context_, i);
}

void WorkerTeam::threadBody() noexcept {
  for (int round = 0;; ++round) {
    awaitChange(round_, round);
    if (isEnding_) return;
    work();
    if (busyThreads_.fetch_sub(1, std::memory_order_acq_rel) == 1) busyThreads_.notify_all();
  }
}

}  // namespace platform
