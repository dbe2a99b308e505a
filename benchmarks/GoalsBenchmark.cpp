/// Measures every speed goal and prints a line for each; ends with 1 if one was missed. Arguments choose
/// among the groups "tool", "render", "live", "document", "model", "views", "online", "shell" and
/// "waveform".
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <span>
#include <string_view>
#include <thread>

#include "VelmoraCore/Instruments/VoiceKernel.h"
#include "benchmarks/Goals.h"

namespace {

using namespace velmora;

struct Group {
  std::string_view name;
  void (*measure)(benchmarks::Report& report);
};

// The tool first: the memory of a child counts from that of its parent.
constexpr std::array<Group, 9> groups{{{"tool", benchmarks::measureTool},
                                       {"render", benchmarks::measureRenders},
                                       {"live", benchmarks::measureLiveBlocks},
                                       {"document", benchmarks::measureDocument},
                                       {"model", benchmarks::measureModel},
                                       {"views", benchmarks::measureViews},
                                       {"online", benchmarks::measureOnline},
                                       {"shell", benchmarks::measureShell},
                                       {"waveform", benchmarks::measureWaveform}}};

void printMachine() {
  double load = 0;
  getloadavg(&load, 1);
  std::printf("%u cores, %s kernel, load %.1f at the start\n", std::thread::hardware_concurrency(),
              voiceKernels().front().name, load);
}

}  // namespace

int main(int argc, char** argv) {
  const std::span<char*> wanted(argv + 1, static_cast<std::size_t>(argc - 1));
  try {
    printMachine();
    benchmarks::Report report;
    report.printHeading();
    for (const Group& group : groups)
      if (wanted.empty() || std::ranges::count(wanted, group.name) > 0) group.measure(report);
    return report.missedCount() > 0 ? 1 : 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
  }
}
