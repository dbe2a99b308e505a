#include <QListView>
#include <QMenuBar>
#include <algorithm>
#include <memory>
#include <vector>

#include "Velmora/Studio/Arrangement/ArrangementView.h"
#include "Velmora/Studio/Mixer/MixerView.h"
#include "Velmora/Studio/PatternPicker/PatternEditorView.h"
#include "Velmora/Studio/PianoRoll/PianoEditorView.h"
#include "Velmora/Studio/Shell/WindowGroup.h"
#include "Velmora/Studio/StepGrid/StepGridView.h"
#include "benchmarks/Goals.h"
#include "benchmarks/Views.h"
#include "tests/support/HandDrivenOutput.h"
#include "tests/support/TemporaryFolder.h"

namespace velmora::benchmarks {

namespace {

PatternEditors editors(AppModel& model) {
  return {
      .stepGrid = [&model](const UUID& pattern, const UUID&,
                           QWidget* parent) { return new StepGridView(model, pattern, parent); },
      .pianoRoll = [&model](const UUID& pattern, const UUID& track,
                            QWidget* parent) { return new PianoEditorView(model, pattern, track, parent); }};
}

ShellServices services(AppModel& model) {
  ShellServices services;
  services.views = {
      .arrangement = [&model](QWidget* parent) { return new ArrangementView(model, parent); },
      .patternEditor =
          [&model](QWidget* parent) { return new PatternEditorView(model, editors(model), parent); },
      .mixer = [&model](QWidget* parent) { return new MixerView(model, parent); }};
  return services;
}

/// The studio as it starts, with its window on the screen.
struct Studio {
  explicit Studio(ProjectStore& store)
      : model(Song::demo(), &store, {std::make_unique<testing::HandDrivenOutput>(), nullptr}, telemetry),
        windows(model, services(model)),
        window(windows.open()) {
    while (!model.isEngineRunning()) QCoreApplication::processEvents();
  }

  SilentTelemetry telemetry;
  AppModel model;
  WindowGroup windows;
  MainWindow& window;
};

double percentile99(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() * 99 / 100];
}

/// From the smallest window through all layouts to a large one and back, 8 points a frame.
QSize sizeAt(int frame, int frames) {
  const int way = std::min(frame, frames - frame);
  return {540 + 8 * way, 480 + 4 * way};
}

void measureResizing(Report& report, Studio& studio) {
  constexpr int frames = 2 * (1600 - 540) / 8;
  struct Row {
    const char* name;
    Workspace workspace;
  };
  for (const auto& [name, workspace] : {Row{"arrangement", Workspace::arrangement},
                                        Row{"editor", Workspace::pattern}, Row{"mixer", Workspace::mixer}}) {
    studio.model.setWorkspace(workspace);
    const auto step = [&](int frame) { studio.window.resize(sizeAt(frame, frames)); };
    stepTimes(frames, step);  // makes the views
    const std::vector<double> times = stepTimes(frames, step);
    addFigure(report, std::string("resize the window, ") + name, Amount::seconds(median(times)),
              frameAtSixty);
    addFigure(report, "… one frame of a hundred", Amount::seconds(percentile99(times)), frameAtSixty);
  }
}

/// A user's press would wait for as long as the main thread is busy without a break.
void measureLibrary(Report& report, Studio& studio, int count) {
  std::vector<double> busy;
  const auto isListed = [&] {
    const auto* list = studio.window.findChild<QListView*>("library.list");
    return list && list->model()->rowCount() == count;
  };
  const double listed = elapsed(CLOCK_MONOTONIC, [&] {
    busy.push_back(elapsed(CLOCK_MONOTONIC, [&] { studio.model.showsProjects.set(true); }));
    while (!isListed()) {
      busy.push_back(elapsed(CLOCK_MONOTONIC, [] { QCoreApplication::processEvents(); }));
    }
    busy.push_back(elapsed(CLOCK_MONOTONIC, [] { QCoreApplication::processEvents(); }));
  });
  addFigure(report, "list 500 projects", Amount::seconds(listed), 1);
  addFigure(report, "… the longest hold of the main thread", Amount::seconds(*std::ranges::max_element(busy)),
            frameAtSixty);
}

}  // namespace

void measureShell(Report& report) {
  constexpr int projectCount = 500;
  offscreenApplication();
  const testing::TemporaryFolder folder;
  ProjectStore store(folder.path());
  Studio studio(store);
  measureResizing(report, studio);
  studio.window.resize(1280, 800);
  const ProjectFiles files(folder.path());
  for (int made = 1; made < projectCount; ++made) {  // beside the open one
    Song song = Song::demo();
    song.id = UUID::random();
    files.save(song);
  }
  measureLibrary(report, studio, projectCount);
}

}  // namespace velmora::benchmarks
