#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

#include "Velmora/Model/AppModel.h"
#include "tests/support/HandDrivenOutput.h"
#include "tests/support/HandFedInput.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Variable.h"

namespace velmora::testing {

/// Serves the event loop until the condition holds; false if it doesn't within the deadline.
inline bool spinUntil(const std::function<bool()>& condition, int milliseconds = 20000) {
  const QDeadlineTimer deadline(milliseconds);
  while (!condition() && !deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  return condition();
}

/// Remembers the events that the model offers.
struct RecordedTelemetry final : TelemetrySink {
  void record(TelemetryEvent event) override { events.push_back(event); }
  auto count(TelemetryEvent event) const { return std::count(events.begin(), events.end(), event); }
  std::vector<TelemetryEvent> events;
};

/// A model with a real store in a folder of its own and an output that is pulled by hand.
struct ModelBench {
  explicit ModelBench(Song song = Song::demo()) { start(std::move(song)); }

  /// A new process on the same disk.
  void start(Song song = Song::demo()) {
    auto output = std::make_unique<HandDrivenOutput>();
    device = output.get();
    auto input = std::make_unique<HandFedInput>();
    microphone = input.get();
    AppModel::Devices devices{std::move(output), std::move(input)};
    model = std::make_unique<AppModel>(std::move(song), &store, std::move(devices), telemetry);
  }
  /// What the root view does when it first appears.
  void open() {
    auto starting = model->startUp();
    spinUntil([&] { return starting.isReady(); });
  }
  bool awaitStatus(const std::string& status) {
    return spinUntil([&] { return model->saveStatus() == status; });
  }
  std::filesystem::path document(const UUID& id) const { return folder / id.text() / "song.json"; }
  std::string error() const { return model->lastError().value_or(""); }

  TemporaryFolder folder;
  TemporaryFolder takes;
  Variable temporaryFolder{"TMPDIR", takes.path().c_str()};
  ProjectStore store{folder.path()};
  RecordedTelemetry telemetry;
  HandDrivenOutput* device = nullptr;
  HandFedInput* microphone = nullptr;
  std::unique_ptr<AppModel> model;
};

}  // namespace velmora::testing
