#pragma once

#include <QCoroTask>
#include <exception>
#include <type_traits>

#include "Platform/Tasks/Outcome.h"

namespace platform {

/// Waits for the task however it ends, so that what follows is the same for a value and for a failure.
template <class Value>
QCoro::Task<Outcome<Value>> outcomeOf(QCoro::Task<Value> task) {
  Outcome<Value> outcome;
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
  co_return outcome;
}

}  // namespace platform
