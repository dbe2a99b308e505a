// The composition root: the only place that makes and wires everything.

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <csignal>
#include <cstdio>
#include <memory>
#include <utility>

#include "Platform/Audio/CubebInput.h"
#include "Platform/Audio/CubebOutput.h"
#include "Platform/Services/FirstInstance.h"
#include "Platform/Services/MediaPlayerService.h"
#include "Platform/Services/MotionPreference.h"
#include "Platform/Services/SleepInhibitor.h"
#include "Platform/Services/UpdateInstaller.h"
#include "Platform/Tasks/SignalWatcher.h"
#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Online/OnlineWindows.h"
#include "Velmora/Studio/Arrangement/ArrangementView.h"
#include "Velmora/Studio/AudioEditor/AudioEditorView.h"
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

/// There is nothing to choose on the command line; whoever asks it for something else is told so.
void readCommandLine(const QApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription("A small desktop music studio.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.process(application);
}

QIcon windowIcon() {
  QIcon icon;
  for (const char* file : {":/icons/16.png", ":/icons/32.png", ":/icons/64.png"}) icon.addFile(file);
  return icon;
}

PatternEditors patternEditors(AppModel& model) {
  return {.stepGrid = [&model](const UUID& patternID, const UUID&,
                               QWidget* parent) { return new StepGridView(model, patternID, parent); },
          .pianoRoll =
              [&model](const UUID& patternID, const UUID& trackID, QWidget* parent) {
                return new PianoEditorView(model, patternID, trackID, parent);
              },
          .audio = [&model](const UUID& trackID,
                            QWidget* parent) { return new AudioEditorView(model, trackID, parent); }};
}

ShellServices shellServices(AppModel& model, OnlineWindows& online, platform::MotionPreference& motion) {
  ShellServices services;
  services.views.arrangement = [&model](QWidget* parent) { return new ArrangementView(model, parent); };
  services.views.patternEditor = [&model](QWidget* parent) {
    return new PatternEditorView(model, patternEditors(model), parent);
  };
  services.views.mixer = [&model](QWidget* parent) { return new MixerView(model, parent); };
  services.contentAppeared = [&] {
    online.start();
    motion.start();
  };
  services.stayedOpen = [&online] { online.stayedOpen(); };
  services.makeNotice = [&online](QWidget* parent) { return online.makeUpdateNotice(parent); };
  services.checkForUpdates = [&online](QWidget* window) { online.checkForUpdates(window); };
  services.showAccount = [&online](QWidget* window) { online.showAccount(window); };
  services.showCommunity = [&online](QWidget* window) { online.showCommunity(window); };
  services.accountEntry = [&online] { return online.accountEntry(); };
  return services;
}

platform::MediaPlayerService::Commands mediaCommands(AppModel& model, WindowGroup& windows) {
  return {.play = [&model] { model.play(); },
          .pause = [&model] { model.pause(); },
          .playPause = [&model] { model.togglePlay(); },
          .stop = [&model] { model.stop(); },
          .previous = [&model] { model.returnToStart(); },
          .position = [&model] { return model.transport().playhead() * 60 / model.song().bpm; },
          .raise = [&windows] { windows.bringToFront(); },
          .quit = [&windows] { windows.quit(); }};
}

platform::MediaPlayerService::State mediaState(const AppModel& model) {
  using enum platform::MediaPlayerService::Status;
  const auto standing = model.transport().playhead() > 0 ? paused : stopped;
  return {model.isPlaying() ? playing : standing, QString::fromStdString(model.song().name)};
}

int runStudio(int count, char** arguments, platform::UpdateInstaller& installer) {
  nameApplication();
  QApplication application(count, arguments);
  readCommandLine(application);
  platform::FirstInstance instance(ProjectFiles::defaultRoot().parent_path());
  if (!instance.isFirst()) {
    std::fputs("Velmora is already open with these projects.\n", stderr);
    instance.callFirst();
    return 1;
  }
  Theme::install();
  QGuiApplication::setWindowIcon(windowIcon());

  OnlineServices services(installer);
  ProjectStore projectStore;
  AppModel::Devices devices{
      std::make_unique<platform::CubebOutput>(), std::make_unique<platform::CubebInput>(),
      [](const char* reason) { return std::make_shared<platform::SleepInhibitor>(reason); }};
  AppModel model(Song::demo(), &projectStore, std::move(devices), services.telemetry);
  std::function<void()> quit;
  OnlineWindows online(
      model, services, [&quit] { quit(); }, [] { return std::make_unique<platform::CubebOutput>(); });
  platform::MotionPreference motion(Theme::setReducesMotion);
  WindowGroup windows(model, shellServices(model, online, motion));
  quit = [&windows] { windows.quit(); };
  platform::MediaPlayerService mediaKeys(QGuiApplication::desktopFileName(), mediaCommands(model, windows));
  const ChangeListener mediaListener([&] { mediaKeys.setState(mediaState(model)); }, model.isPlaying,
                                     model.playheadRevision, model.song);
  const auto jumpNotifier = model.playheadRevision.addNotifier([&] { mediaKeys.tellJump(); });
  const platform::SignalWatcher signals({SIGTERM, SIGINT, SIGHUP}, [&](int) { windows.quitSoon(); });
  instance.setOnCall([&] { windows.bringToFront(); });
  windows.open();
  return QApplication::exec();
}

}  // namespace

/// The very last thing is an update that is ready: it takes the program's place, and may run in it.
int main(int count, char** arguments) {
  platform::UpdateInstaller installer;
  const int status = runStudio(count, arguments, installer);
  installer.finish();
  return status;
}
