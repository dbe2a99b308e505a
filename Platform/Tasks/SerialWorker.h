#pragma once

#include <QCoroFuture>
#include <QCoroTask>
#include <QThreadPool>
#include <QtConcurrentRun>
#include <type_traits>
#include <utility>

#include "Platform/Tasks/Outcome.h"

namespace platform {

/// One background thread that does what it is given, one thing at a time, in the order in which it was given.
///
/// The thread starts with the first work and stays. The worker must outlive nothing: its destruction waits
/// for all work that was issued, and whoever awaits it still gets the answer.
class SerialWorker {
 public:
  SerialWorker();

  /// Issues the work at once; the task that it returns resumes the awaiting thread, which needs an event
  /// loop, with the work's value or its exception. Work that is finished already doesn't suspend. A task that
  /// is dropped leaves the work running, and its exception unheard.
  template <class Work, class Value = std::invoke_result_t<std::decay_t<Work>&>>
  QCoro::Task<Value> run(Work&& work) {
    auto job = [work = std::forward<Work>(work)]() mutable { return outcomeOf(work); };
    return answer<Value>(QtConcurrent::run(&pool_, std::move(job)));
  }

 private:
  // Named, because the compiler destroys temporaries inside an awaited expression twice.
  template <class Value>
  static QCoro::Task<Value> answer(QFuture<Outcome<Value>> future) {
    Outcome<Value> outcome = co_await future;
    co_return outcome.take();
  }

  QThreadPool pool_;
};

}  // namespace platform
