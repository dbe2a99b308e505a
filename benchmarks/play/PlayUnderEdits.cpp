/// Plays the demo through the sound server at hand while edits rain, and prints how many callbacks came late.
/// Takes the seconds to play.
#include <QCoreApplication>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "Platform/Audio/CubebOutput.h"
#include "Velmora/Model/AppModel.h"

namespace {

using namespace velmora;
using namespace std::chrono_literals;

constexpr auto editInterval = 50ms;

/// Turn and turn about: the mix, the notes, the tracks.
void edit(AppModel& model, int n) {
  const Track drums = model.song().tracks[0];
  model.setTrackVolume(drums.id, static_cast<float>(n % 20) / 20);
  model.toggleDrumStep(*drums.selectedPatternID, DrumSound::clap, n % 16);
  if (n % 40 == 0) model.addTrack(TrackKind::synth(SynthPreset::pad));
  if (n % 40 == 20) model.deleteTrack(model.song().tracks.back().id);
}

}  // namespace

int main(int count, char** arguments) {
  QCoreApplication application(count, arguments);
  const int seconds = count > 1 ? std::atoi(arguments[1]) : 600;
  SilentTelemetry telemetry;
  auto output = std::make_unique<platform::CubebOutput>();
  const platform::CubebOutput& device = *output;
  AppModel model(Song::demo(), nullptr, {std::move(output), nullptr}, telemetry);
  model.configure();
  if (!model.isEngineRunning()) {
    std::fprintf(stderr, "%s\n", model.lastError().value_or("no sound").c_str());
    return 1;
  }
  model.play();
  int edits = 0;
  QTimer rain;
  rain.callOnTimeout([&] { edit(model, edits++); });
  rain.start(editInterval);
  QTimer::singleShot(std::chrono::seconds(seconds), &application, &QCoreApplication::quit);
  QCoreApplication::exec();
  std::printf("%d s, %d edits, %llu late callbacks\n", seconds, edits,
              static_cast<unsigned long long>(device.lateCallbacks()));
  return 0;
}
