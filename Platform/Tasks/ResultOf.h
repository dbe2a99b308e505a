#pragma once

#include <QCoreApplication>
#include <QCoroTask>
#include <QEvent>
#include <QEventLoop>
#include <utility>

#include "Platform/Tasks/TaskOutcome.h"

namespace platform {
namespace detail {

template <class Value>
QCoro::Task<> finish(QCoro::Task<Value> task, Outcome<Value>& outcome, QEventLoop& loop) {
  auto ending = outcomeOf(std::move(task));
  outcome = co_await ending;
  loop.quit();
}

}  // namespace detail

/// Serves the event loop until the task is done; gives its value or throws its exception. For tests and for
/// programs without a window: a nested event loop is no place for the application. (`QCoro::waitFor` never
/// returns when the task throws.)
template <class Value>
Value resultOf(QCoro::Task<Value> task) {
  QEventLoop loop;
  Outcome<Value> outcome;
  detail::finish(std::move(task), outcome, loop);
  if (!outcome.hasEnded()) loop.exec();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);  // the watchers of what was awaited
  return outcome.take();
}

}  // namespace platform
