#pragma once

#include <QCoreApplication>
#include <QCoroTask>
#include <QEvent>
#include <QEventLoop>
#include <exception>
#include <type_traits>
#include <utility>

#include "Platform/Tasks/Outcome.h"

namespace platform {
namespace detail {

template <class Value>
QCoro::Task<> finish(QCoro::Task<Value> task, Outcome<Value>& outcome, QEventLoop& loop) {
  try {
    if constexpr (std::is_void_v<Value>) {
      co_await task;
      outcome.value.emplace();
    } else {
      outcome.value.emplace(co_await task);
    }
  } catch (...) {
    outcome.error = std::current_exception();
  }
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
