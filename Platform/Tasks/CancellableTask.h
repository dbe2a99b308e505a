#pragma once

#include <QCoroFuture>
#include <QCoroTask>
#include <QPromise>
#include <stop_token>

namespace platform {

/// Work under way that can be asked to stop and waited for. Whoever does the work calls `finish` once, at its
/// very end. Main thread, but for the token.
class CancellableTask {
 public:
  CancellableTask() { ended_.start(); }

  std::stop_token token() const { return stop_.get_token(); }
  bool isCancelled() const { return stop_.stop_requested(); }
  void cancel() { stop_.request_stop(); }

  void finish() { ended_.finish(); }

  /// Ready once the work has ended, however it did.
  QCoro::Task<> ended() const {
    const QFuture<void> future = ended_.future();
    co_await future;
  }

 private:
  std::stop_source stop_;
  QPromise<void> ended_;
};

}  // namespace platform
