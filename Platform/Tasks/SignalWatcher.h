#pragma once

#include <QSocketNotifier>
#include <functional>
#include <initializer_list>
#include <memory>

namespace platform {

/// Brings the process's signals (SIGINT, SIGTERM and the like) to the main thread's event loop. One at a
/// time.
class SignalWatcher {
 public:
  /// `onSignal` runs on the main thread with the signal's number.
  SignalWatcher(std::initializer_list<int> signals, std::function<void(int signal)> onSignal);

  /// Gives the signals back to the system.
  ~SignalWatcher();
  SignalWatcher(const SignalWatcher&) = delete;
  SignalWatcher& operator=(const SignalWatcher&) = delete;

 private:
  void readSignals();

  std::initializer_list<int>::size_type count_;
  int signals_[8] = {};
  int readEnd_ = -1;
  std::function<void(int)> onSignal_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace platform
