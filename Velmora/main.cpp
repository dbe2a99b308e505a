// The composition root: the only place that makes and wires everything.

#include <QApplication>
#include <csignal>
#include <cstdio>

#include "Platform/Audio/CubebOutput.h"
#include "Platform/Services/FirstInstance.h"
#include "Platform/Tasks/SignalWatcher.h"
#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/Arrangement/ArrangementView.h"
#include "Velmora/Studio/Mixer/MixerView.h"
#include "Velmora/Studio/PatternPicker/PatternEditorView.h"
#include "Velmora/Studio/PianoRoll/PianoEditorView.h"
#include "Velmora/Studio/Shell/WindowGroup.h"
#include "Velmora/Studio/StepGrid/StepGridView.h"
#include "Velmora/Theme/Theme.h"

namespace {

using namespace velmora;

void nameApplication() {
  QCoreApplication::setOrganizationName("Orrin");
  QCoreApplication::setApplicationName("Velmora");
  QCoreApplication::setApplicationVersion(VELMORA_VERSION);
  QGuiApplication::setDesktopFileName("com.halvenor.Velmora");
}

PatternEditors patternEditors(AppModel& model) {
  return {.stepGrid = [&model](const UUID& patternID, const UUID&,
                               QWidget* parent) { return new StepGridView(model, patternID, parent); },
          .pianoRoll =
              [&model](const UUID& patternID, const UUID& trackID, QWidget* parent) {
                return new PianoEditorView(model, patternID, trackID, parent);
              }};
}

ShellServices services(AppModel& model) {
  ShellServices services;
  services.views.arrangement = [&model](QWidget* parent) { return new ArrangementView(model, parent); };
  services.views.patternEditor = [&model](QWidget* parent) {
    return new PatternEditorView(model, patternEditors(model), parent);
  };
  services.views.mixer = [&model](QWidget* parent) { return new MixerView(model, parent); };
  services.exportWAV = [&model] { model.exportWAV(); };
  return services;
}

}  // namespace

int main(int count, char** arguments) {
  nameApplication();
  QApplication application(count, arguments);
  platform::FirstInstance instance(ProjectFiles::defaultRoot().parent_path());
  if (!instance.isFirst()) {
    std::fputs("Velmora is already open with these projects.\n", stderr);
    instance.callFirst();
    return 1;
  }
  Theme::install();

  SilentTelemetry telemetry;
  ProjectStore projectStore;
  AppModel model(Song::demo(), &projectStore, {std::make_unique<platform::CubebOutput>(), nullptr},
                 telemetry);
  WindowGroup windows(model, services(model));
  const platform::SignalWatcher signals({SIGTERM, SIGINT, SIGHUP}, [&](int) { windows.quit(); });
  instance.setOnCall([&] { windows.bringToFront(); });
  windows.open();
  return QApplication::exec();
}
