#pragma once

#include <exception>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace platform {

/// How work ended: with a value or with an exception, kept as it was thrown. (A `QFuture` would hand on any
/// exception that isn't Qt's own as a nameless `QUnhandledException`.)
template <class Value>
struct Outcome {
  std::optional<std::conditional_t<std::is_void_v<Value>, std::monostate, Value>> value;
  std::exception_ptr error;

  bool hasEnded() const { return value || error; }

  /// The value, or the exception thrown again. Once.
  Value take() {
    if (error) std::rethrow_exception(std::move(error));
    if constexpr (!std::is_void_v<Value>) return std::move(*value);
  }
};

/// Does the work here and now.
template <class Work, class Value = std::invoke_result_t<Work&>>
Outcome<Value> outcomeOf(Work& work) {
  Outcome<Value> outcome;
  try {
    if constexpr (std::is_void_v<Value>) {
      work();
      outcome.value.emplace();
    } else {
      outcome.value.emplace(work());
    }
  } catch (...) {
    outcome.error = std::current_exception();
  }
  return outcome;
}

}  // namespace platform
