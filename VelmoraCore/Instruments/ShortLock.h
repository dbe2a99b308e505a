#pragma once

#include <pthread.h>

namespace velmora {

/// A mutex for a few field copies between the main thread and the audio threads.
///
/// It inherits priority: a waiting audio thread lifts the holder, so that no thread of middling priority can
/// keep the holder from finishing. Not recursive. Usable with std::lock_guard.
class ShortLock {
 public:
  ShortLock() noexcept {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    pthread_mutex_init(&mutex_, &attributes);
    pthread_mutexattr_destroy(&attributes);
  }
  ~ShortLock() { pthread_mutex_destroy(&mutex_); }
  ShortLock(const ShortLock&) = delete;
  ShortLock& operator=(const ShortLock&) = delete;

  void lock() noexcept { pthread_mutex_lock(&mutex_); }
  void unlock() noexcept { pthread_mutex_unlock(&mutex_); }
  bool tryLock() noexcept { return pthread_mutex_trylock(&mutex_) == 0; }

 private:
  pthread_mutex_t mutex_;
};

}  // namespace velmora
