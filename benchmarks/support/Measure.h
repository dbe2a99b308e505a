#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <ctime>
#include <string>
#include <vector>

/// Clocks, medians and memory of this process and its children.
namespace velmora::benchmarks {

/// The seconds of a clock: CLOCK_MONOTONIC, CLOCK_PROCESS_CPUTIME_ID or CLOCK_THREAD_CPUTIME_ID.
double secondsOf(clockid_t clock) noexcept;

/// The seconds that `body` takes by the clock.
template <class Body>
double elapsed(clockid_t clock, const Body& body) {
  const double start = secondsOf(clock);
  body();
  return secondsOf(clock) - start;
}

double median(std::vector<double> values);
double least(const std::vector<double>& values);

/// Calls the measures in turn, `rounds` times, and returns the values of each: other load on the machine then
/// meets all of them alike.
template <class... Measures>
std::array<std::vector<double>, sizeof...(Measures)> interleaved(int rounds, const Measures&... measures) {
  std::array<std::vector<double>, sizeof...(Measures)> values;
  for (int round = 0; round < rounds; ++round) {
    std::size_t index = 0;
    (values[index++].push_back(measures()), ...);
  }
  return values;
}

/// The median of each measure's values.
template <class... Measures>
std::array<double, sizeof...(Measures)> interleavedMedians(int rounds, const Measures&... measures) {
  const auto values = interleaved(rounds, measures...);
  std::array<double, sizeof...(Measures)> medians;
  std::transform(values.begin(), values.end(), medians.begin(), median);
  return medians;
}

struct ChildRun {
  double wallSeconds;
  double processorSeconds;
  double peakBytes;  ///< of its resident memory
};

/// Runs a program to its end, without input or output. The system counts this process's own memory at the
/// start as the child's first, so a child larger than this process is needed for a true peak. Throws
/// `std::runtime_error` if the program can't be run or fails.
ChildRun runChild(std::vector<std::string> arguments);

/// Gives free memory back to the system and starts the peak of this process anew; its present size in bytes.
double startPeak();

/// The largest resident size of this process in bytes since `startPeak`.
double peakBytes();

}  // namespace velmora::benchmarks
