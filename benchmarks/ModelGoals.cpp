#include <QCoreApplication>
#include <vector>

#include "Velmora/Model/AppModel.h"
#include "benchmarks/Goals.h"
#include "benchmarks/support/Measure.h"
#include "tests/support/HandDrivenOutput.h"

namespace velmora::benchmarks {

namespace {

constexpr int edits = 2000;

}  // namespace

void measureModel(Report& report) {
  SilentTelemetry telemetry;
  AppModel model(Song::demo(), nullptr, {std::make_unique<testing::HandDrivenOutput>(), nullptr}, telemetry);
  model.configure();
  const Track& drums = model.song().tracks[0];
  const UUID track = drums.id, pattern = *drums.selectedPatternID;
  const auto medianOf = [](auto edit) {
    std::vector<double> times;
    for (int n = 0; n < edits; ++n) times.push_back(elapsed(CLOCK_MONOTONIC, [&] { edit(n); }));
    return Amount::seconds(median(std::move(times)));
  };
  const auto goal = Goal::figure(0.002);
  report.add("commit on the demo, volume",
             medianOf([&](int n) { model.setTrackVolume(track, static_cast<float>(n % 100) / 100); }),
             Amount::seconds(0.002), goal);
  report.add("commit on the demo, drum step",
             medianOf([&](int n) { model.toggleDrumStep(pattern, DrumSound::clap, n % 16); }),
             Amount::seconds(0.002), goal);
}

}  // namespace velmora::benchmarks
