#pragma once

#include <exception>

namespace platform {

/// What work throws when it was asked to stop before it was done.
struct Cancelled : std::exception {
  const char* what() const noexcept override { return "The operation was cancelled."; }
};

}  // namespace platform
