#include "Platform/Tasks/SignalWatcher.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

volatile std::sig_atomic_t writeEnd = -1;

/// Runs in the signal handler: a write to a pipe is all that is allowed there.
void forward(int signal) {
  const int before = errno;
  const auto number = static_cast<unsigned char>(signal);
  [[maybe_unused]] const auto written = ::write(writeEnd, &number, 1);
  errno = before;
}

}  // namespace

SignalWatcher::SignalWatcher(std::initializer_list<int> signals, std::function<void(int)> onSignal)
    : count_(signals.size()), onSignal_(std::move(onSignal)) {
  int ends[2];
  if (writeEnd >= 0 || count_ > std::size(signals_) || ::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
    throw std::logic_error("signals can't be watched");
  }
  readEnd_ = ends[0];
  writeEnd = ends[1];
  notifier_ = std::make_unique<QSocketNotifier>(readEnd_, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { readSignals(); });

  struct sigaction action {};
  action.sa_handler = forward;
  action.sa_flags = SA_RESTART;
  std::size_t next = 0;
  for (const int signal : signals) {
    signals_[next++] = signal;
    ::sigaction(signal, &action, nullptr);
  }
}

SignalWatcher::~SignalWatcher() {
  for (std::size_t i = 0; i < count_; ++i) std::signal(signals_[i], SIG_DFL);
  notifier_.reset();
  ::close(std::exchange(readEnd_, -1));
  ::close(writeEnd);
  writeEnd = -1;
}

void SignalWatcher::readSignals() {
  unsigned char number = 0;
  while (::read(readEnd_, &number, 1) == 1) onSignal_(number);
}

}  // namespace platform
