#pragma once

#include <stdexcept>

namespace velmora {

/// Why the studio can't close now.
struct CloseError : std::runtime_error {
  using std::runtime_error::runtime_error;
  static CloseError busy() {
    return CloseError("Wait for the current audio or project operation to finish, then quit again.");
  }
  static CloseError unsavedTake() {
    return CloseError("Save or discard the pending recorded take before quitting.");
  }
};

}  // namespace velmora
