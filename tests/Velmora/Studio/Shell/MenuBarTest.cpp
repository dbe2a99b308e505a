#include <QMenu>

#include "Velmora/Studio/Shell/MenuBar.h"
#include "tests/Velmora/Studio/Shell/ShellBench.h"

namespace velmora {
namespace {

using MenuBarTest = testing::ShellBench;

void describe(const QList<QAction*>& actions, const QString& indent, QString& text) {
  for (const QAction* action : actions) {
    EXPECT_TRUE(action->isEnabled());
    QStringList keys;
    for (const QKeySequence& key : action->shortcuts()) keys << key.toString();
    const QString shown = action->isSeparator() ? "--" : QString(action->text()).remove('&');
    text += indent + shown + (keys.isEmpty() ? "" : "  " + keys.join(" or ")) + "\n";
    if (action->menu()) describe(action->menu()->actions(), indent + "  ", text);
  }
}

TEST_F(MenuBarTest, OffersEveryItemWithItsKeys) {
  const auto menus = [&] {
    QString text;
    describe(window_->menuBar()->actions(), "", text);
    return text;
  };
  EXPECT_EQ(menus().toStdString(), R"(Velmora
  About Velmora
  Check for Updates…
  Velmora Account…
File
  New Velmora by Orrin Window  Ctrl+Shift+N
  New Project  Ctrl+N
  Open Project…  Ctrl+O
  Save Project  Ctrl+S
  --
  Import Audio…  Ctrl+I
  Export WAV…  Ctrl+Shift+E
  --
  Close Window  Ctrl+W
  Quit  Ctrl+Q
Workspace
  Arrangement  Ctrl+Alt+1
  Pattern / Audio Editor  Ctrl+Alt+2
  Mixer  Ctrl+Alt+3
  --
  Hide Editor
Transport
  Play / Pause  Space
  Stop  Ctrl+.
  Return to Start  Return or Enter
  --
  Pattern Mode  Ctrl+1
  Song Mode  Ctrl+2
Track
  Add Drums
  Add Synth
    MiniSynth
    Bass
    Pad
    Lead
    Keys
  Add Audio
  --
  Delete Track  Ctrl+Shift+Del or Ctrl+Shift+Backspace
Edit Selection
  Delete Selection  Del or Backspace
)");
  model().editorVisible.set(false);
  EXPECT_TRUE(testing::spinUntil([&] { return menus().contains("Show Editor"); }));
}

TEST_F(MenuBarTest, RunsTheModelsCommandsFromTheKeyboard) {
  constexpr Qt::KeyboardModifiers control = Qt::ControlModifier;
  constexpr Qt::KeyboardModifiers controlAlt = control | Qt::AltModifier;
  press(Qt::Key_Space);
  EXPECT_TRUE(model().isPlaying());
  press(Qt::Key_Period, control);
  EXPECT_FALSE(model().isPlaying());
  model().seek(7);
  press(Qt::Key_Return);
  EXPECT_EQ(model().transport().playhead(), 0);
  press(Qt::Key_1, control);
  EXPECT_EQ(model().mode(), PlaybackMode::pattern);
  press(Qt::Key_3, controlAlt);
  EXPECT_EQ(model().workspace(), Workspace::mixer);
  model().editorVisible.set(false);
  press(Qt::Key_2, controlAlt);
  EXPECT_EQ(model().workspace(), Workspace::pattern);
  EXPECT_TRUE(model().editorVisible());

  model().selectClip(model().song().clips[0].id);
  press(Qt::Key_Delete);
  EXPECT_EQ(model().song().clips.size(), 1U);
  press(Qt::Key_Delete, control | Qt::ShiftModifier);
  EXPECT_EQ(model().song().tracks.size(), 1U);
  press(Qt::Key_I, control);
  EXPECT_TRUE(model().showsAudioImport());
}

}  // namespace
}  // namespace velmora
