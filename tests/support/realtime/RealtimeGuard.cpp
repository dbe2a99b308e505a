#include "tests/support/realtime/RealtimeGuard.h"

#include <cstdlib>
#include <dlfcn.h>
#include <new>
#include <pthread.h>

namespace velmora::testing {

namespace {

enum Fault { allocation, release, lock, wait, faultCount };
constexpr const char* faultNames[faultCount] = {"malloc", "free", "lock", "wait"};

// A sanitizer has interceptors of its own, so that part of this is unused there.

// Plain thread-locals: set up without a call, as the interceptors run before main and in every thread.
thread_local bool isWatched = false;
thread_local int counts[faultCount] = {};
thread_local const RealtimeGuard::Range* permittedStart = nullptr;
thread_local std::size_t permittedCount = 0;

[[maybe_unused]] void note(Fault fault) noexcept {
  if (isWatched) ++counts[fault];
}

[[maybe_unused]] void noteLock(const void* mutex) noexcept {
  if (!isWatched) return;
  for (std::size_t i = 0; i < permittedCount; ++i) {
    const auto* start = static_cast<const char*>(permittedStart[i].start);
    const auto* at = static_cast<const char*>(mutex);
    if (at >= start && at < start + permittedStart[i].size) return;
  }
  ++counts[lock];
}

/// The C library's own function. Condition variables exist there in two layouts: a look-up without the
/// version would find the old one, and wake-ups would be lost between the two.
template <class Function>
[[maybe_unused]] Function next(const char* name) noexcept {
  void* versioned = dlvsym(RTLD_NEXT, name, "GLIBC_2.3.2");
  return reinterpret_cast<Function>(versioned ? versioned : dlsym(RTLD_NEXT, name));
}

}  // namespace

RealtimeGuard::RealtimeGuard(std::vector<Range> permitted) : permitted_(std::move(permitted)) {
  permittedStart = permitted_.data();
  permittedCount = permitted_.size();
  for (int& count : counts) count = 0;
  isWatched = true;
}

RealtimeGuard::~RealtimeGuard() {
  isWatched = false;
  permittedCount = 0;
}

std::string RealtimeGuard::faults() const {
  const bool before = isWatched;
  isWatched = false;
  std::string text;
  for (int fault = 0; fault < faultCount; ++fault) {
    if (counts[fault] == 0) continue;
    text += (text.empty() ? "" : ", ") + std::string(faultNames[fault]) + " " + std::to_string(counts[fault]);
  }
  isWatched = before;
  return text;
}

#ifdef VELMORA_SANITIZED

bool RealtimeGuard::isEffective() { return false; }

}  // namespace velmora::testing

#else

bool RealtimeGuard::isEffective() { return true; }

}  // namespace velmora::testing

using velmora::testing::next;
using velmora::testing::note;
using velmora::testing::noteLock;

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) {
  note(velmora::testing::allocation);
  return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
  note(velmora::testing::allocation);
  return __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) {
  note(velmora::testing::allocation);
  return __libc_realloc(memory, size);
}
void free(void* memory) {
  if (memory) note(velmora::testing::release);
  __libc_free(memory);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
  static const auto real = next<int (*)(pthread_mutex_t*)>("pthread_mutex_lock");
  noteLock(mutex);
  return real(mutex);
}
int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
  static const auto real = next<int (*)(pthread_cond_t*, pthread_mutex_t*)>("pthread_cond_wait");
  note(velmora::testing::wait);
  return real(condition, mutex);
}
int pthread_cond_signal(pthread_cond_t* condition) {
  static const auto real = next<int (*)(pthread_cond_t*)>("pthread_cond_signal");
  note(velmora::testing::wait);
  return real(condition);
}
int pthread_cond_broadcast(pthread_cond_t* condition) {
  static const auto real = next<int (*)(pthread_cond_t*)>("pthread_cond_broadcast");
  note(velmora::testing::wait);
  return real(condition);
}

}  // extern "C"

#endif
