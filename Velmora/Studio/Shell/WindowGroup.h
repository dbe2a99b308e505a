#pragma once

#include <QObject>
#include <QPointer>
#include <vector>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ApplicationLifecycle.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Shell/AudioFileActions.h"
#include "Velmora/Studio/Shell/EditorFraction.h"
#include "Velmora/Studio/Shell/KeyFilter.h"
#include "Velmora/Studio/Shell/MainWindow.h"
#include "Velmora/Studio/Shell/ShellServices.h"

class QEventLoop;

namespace velmora {

/// The windows of the application and its only way out: whoever wants it to end, the last window, a menu, the
/// desktop's session or a signal, asks here, and it ends when the work is safe.
class WindowGroup : public QObject {
 public:
  /// The model outlives the group. Takes the application's keys, sessions and quitting in hand.
  WindowGroup(AppModel& model, ShellServices services);
  ~WindowGroup() override;

  /// Shows one more window. The first one on the screen starts the model up.
  MainWindow& open();

  /// Shows the window that was active last, also from a minimized state.
  void bringToFront();

  /// Asks for the end of the process. Until it comes, or if it can't, everything stays.
  void quit();

  /// Like `quit`, but waits for the audio or project operation under way instead of refusing: for a signal,
  /// which nobody repeats.
  void quitSoon();

  /// Like `quit`, but serves the event loop until the answer is there, without the user's input: the
  /// desktop's session doesn't take a later answer.
  bool mayEndSession();

  AppModel& model() { return model_; }
  const ShellServices& services() const { return services_; }
  EditorFraction& editorFraction() { return editorFraction_; }
  AudioFileActions& audioFileActions() { return audioFileActions_; }

  /// The window that was active last; null without any.
  MainWindow* front() const { return windows_.empty() ? nullptr : windows_.back().data(); }

  // What the windows tell.
  void contentAppeared();
  void becameActive(const MainWindow& window);
  /// Whether a window that was asked to close may go. The last one stays and asks for the end instead.
  bool mayClose(MainWindow& window);

 private:
  void reply(bool mayTerminate);

  AppModel& model_;
  const ShellServices services_;
  EditorFraction editorFraction_;
  AudioFileActions audioFileActions_;
  KeyFilter keyFilter_;
  ApplicationLifecycle lifecycle_;
  std::vector<QPointer<MainWindow>> windows_;  // the one in front last
  std::vector<QPointer<MainWindow>> closed_;   // about to be deleted
  bool hasStarted_ = false;
  bool mayTerminate_ = false;
  bool isQuitAwaited_ = false;
  QEventLoop* sessionWait_ = nullptr;
  ChangeListener busyListener_;
};

}  // namespace velmora
