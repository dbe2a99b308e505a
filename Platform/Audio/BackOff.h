#pragma once

#include <algorithm>
#include <chrono>

namespace platform {

/// When to try again what failed: soon at first, then at longer and longer distances.
class BackOff {
 public:
  using Time = std::chrono::steady_clock::time_point;
  static constexpr std::chrono::milliseconds firstDelay{250};
  static constexpr std::chrono::milliseconds longestDelay{1000};

  void restart(Time now) {
    delay_ = firstDelay;
    due_ = now + delay_;
  }
  /// A try has failed.
  void postpone(Time now) {
    delay_ = std::min(2 * delay_, longestDelay);
    due_ = now + delay_;
  }
  bool isDue(Time now) const { return now >= due_; }

 private:
  std::chrono::milliseconds delay_ = firstDelay;
  Time due_;
};

}  // namespace platform
