#include "Velmora/Projects/ProjectFiles.h"
#include "benchmarks/FixedWork.h"
#include "benchmarks/Goals.h"
#include "benchmarks/support/Measure.h"
#include "tests/support/TemporaryFolder.h"

namespace velmora::benchmarks {

namespace {

constexpr double mostPeakBytes = 40 << 20;
constexpr double longestStart = 0.030;
constexpr int startRounds = 15;

}  // namespace

void measureTool(Report& report) {
  const testing::TemporaryFolder folder;
  const std::string wav = folder / "out.wav";
  const auto saved = [&](Effects effects) {
    const Song song = FixedWork{.effects = effects}.song();
    ProjectFiles(folder.path()).save(song);
    return (folder / song.id.text()).string();
  };
  const std::string dry = saved(Effects::dry), wet = saved(Effects::wet);

  // The bare process, with its libraries and nothing to do, is the reference.
  const double bareBytes = runChild({RENDER_TOOL, "--help"}).peakBytes;
  const auto addPeak = [&](const std::string& name, const std::string& project) {
    const double bytes = runChild({RENDER_TOOL, project, wav}).peakBytes;
    report.add(name, Amount::bytes(bytes), Amount::bytes(bareBytes), Goal::figure(mostPeakBytes));
  };
  addPeak("tool: peak memory, dry (ref: --help)", dry);
  addPeak("tool: peak memory, wet (ref: --help)", wet);

  // From its start to its end, with a tenth of a second of sound in two blocks: more than the first block
  // takes.
  std::vector<double> startProcessor, bareProcessor;
  const auto run = [](const std::vector<std::string>& arguments, std::vector<double>& processorSeconds) {
    const ChildRun child = runChild(arguments);
    processorSeconds.push_back(child.processorSeconds);
    return child.wallSeconds;
  };
  const auto [start, bare] = interleavedMedians(
      startRounds,
      [&] {
        return run({RENDER_TOOL, "--seconds", "0.1", wet, wav}, startProcessor);
      },
      [&] {
        return run({RENDER_TOOL, "--help"}, bareProcessor);
      });
  const auto addStart = [&report](const std::string& name, double seconds, double reference) {
    report.add("tool: start to first block" + name + " (ref: --help)", Amount::seconds(seconds),
               Amount::seconds(reference), Goal::figure(longestStart));
  };
  addStart("", start, bare);
  addStart(", processor", median(startProcessor), median(bareProcessor));
}

}  // namespace velmora::benchmarks
