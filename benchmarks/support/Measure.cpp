#include "benchmarks/support/Measure.h"

#include <fcntl.h>
#include <fstream>
#include <malloc.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora::benchmarks {

namespace {

/// A figure of this process in bytes, from the line of /proc/self/status that starts with `name`.
double statusBytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word != name + ":") continue;
    double kilobytes = 0;
    status >> kilobytes;
    return kilobytes * 1024;
  }
  throw std::runtime_error("no " + name + " in /proc/self/status");
}

double secondsOf(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

/// Standard input, output and error of a child, all to nowhere.
class NoStreams {
 public:
  NoStreams() {
    posix_spawn_file_actions_init(&actions_);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
      posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", O_RDWR, 0);
  }
  ~NoStreams() { posix_spawn_file_actions_destroy(&actions_); }
  NoStreams(const NoStreams&) = delete;
  NoStreams& operator=(const NoStreams&) = delete;

  const posix_spawn_file_actions_t* actions() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

}  // namespace

double secondsOf(clockid_t clock) noexcept {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

double least(const std::vector<double>& values) { return *std::min_element(values.begin(), values.end()); }

ChildRun runChild(std::vector<std::string> arguments) {
  const std::string program = arguments.at(0);
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);

  const NoStreams streams;
  const double start = secondsOf(CLOCK_MONOTONIC);
  pid_t child = 0;
  if (posix_spawn(&child, program.c_str(), streams.actions(), nullptr, pointers.data(), environ) != 0)
    throw std::runtime_error("can't run " + program);
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
    throw std::runtime_error(program + " failed");
  const double wallSeconds = secondsOf(CLOCK_MONOTONIC) - start;
  return {wallSeconds, secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime),
          static_cast<double>(usage.ru_maxrss) * 1024};
}

double startPeak() {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << 5;
  return statusBytes("VmRSS");
}

double peakBytes() { return statusBytes("VmHWM"); }

}  // namespace velmora::benchmarks
