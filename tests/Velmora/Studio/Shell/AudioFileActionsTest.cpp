#include <QAccessible>
#include <QFileDialog>
#include <QLineEdit>
#include <QProgressBar>
#include <fstream>

#include "Platform/Audio/AudioFile.h"
#include "Platform/Files/Files.h"
#include "Velmora/Audio/OfflineExporter.h"
#include "tests/Velmora/Studio/Shell/ShellBench.h"
#include "tests/support/FullDisk.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::FullDisk;
using testing::spinUntil;

class AudioFileActionsTest : public testing::ShellBench {
 protected:
  /// Answers the open dialog from the keyboard.
  void answer(const char* dialog, const fs::path& file) {
    ASSERT_TRUE(activate(dialog));
    QPointer<QFileDialog> asked = find<QFileDialog>(dialog);
    auto* name = asked->findChild<QLineEdit*>("fileNameEdit");
    name->setText(QString::fromStdString(file.string()));
    QTest::keyClick(name, Qt::Key_Return);
    ASSERT_TRUE(spinUntil([&] { return !asked; }));
    window_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_));
  }
  void exportIt() { press(Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier); }
  void import(const fs::path& file) {
    press(Qt::Key_I, Qt::ControlModifier);
    answer("audioImport", file);
    EXPECT_FALSE(model().showsAudioImport());
    ASSERT_TRUE(spinUntil([&] { return !model().isAudioBusy(); }));
  }
  void awaitError(const std::string& end) {
    EXPECT_TRUE(spinUntil([&] { return bench_.error().ends_with(end) && isShown("errorBanner"); }))
        << bench_.error();
    model().lastError.set({});
  }
  static std::string bytes(const fs::path& file) { return platform::readFile(file, 1 << 30); }

  testing::TemporaryFolder files_;
};

TEST_F(AudioFileActionsTest, ImportsTheChosenFileOrTellsWhyNot) {
  const Song before = model().song();
  std::ofstream(files_ / "words.wav") << "no sound";
  import(files_ / "words.wav");
  awaitError("Could not import audio: words.wav: Format not recognised");
  const fs::path rain = files_ / "rain.wav";
  const std::vector<float> tone(8000, 0.5F);
  platform::AudioFileWriter writer(rain, 8000, platform::AudioFileWriter::SampleFormat::int16);
  writer.write(tone, tone);
  writer.close();
  {
    const FullDisk disk(20000);
    import(rain);
    EXPECT_TRUE(bench_.error().starts_with("Could not import audio: ")) << bench_.error();
    awaitError("File too large");
  }
  EXPECT_EQ(model().song(), before);
  import(rain);
  EXPECT_EQ(bench_.error(), "");
  ASSERT_EQ(model().song().audioAssets.size(), 1U);
  EXPECT_EQ(model().song().audioAssets[0].name, "rain");

  press(Qt::Key_I, Qt::ControlModifier);
  ASSERT_TRUE(activate("audioImport"));
  press(Qt::Key_Escape);
  EXPECT_TRUE(spinUntil([&] { return !model().showsAudioImport() && !find("audioImport"); }));

  MainWindow& further = windows_->open();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&further));
  model().showsAudioImport.set(true);
  ASSERT_TRUE(spinUntil([&] { return further.findChild<QFileDialog*>("audioImport"); }));
  further.close();
  EXPECT_TRUE(spinUntil([&] { return !model().showsAudioImport(); }));
}

TEST_F(AudioFileActionsTest, ExportsTheDemoAsTheRendererDoes) {
  model().renameProject("Night/Drive");
  exportIt();
  ASSERT_TRUE(isShown("audioProgress"));
  ASSERT_TRUE(awaitShown("wavExport"));
  EXPECT_FALSE(isShown("audioProgress"));
  const auto* name = find("wavExport")->findChild<QLineEdit*>("fileNameEdit");
  EXPECT_EQ(name->text(), "Night-Drive.wav");
  std::ofstream(files_ / "mix.wav") << "an older mix";
  answer("wavExport", files_ / "mix");  // would replace: it comes back with the whole name
  ASSERT_TRUE(awaitShown("wavExport"));
  EXPECT_EQ(find("wavExport")->findChild<QLineEdit*>("fileNameEdit")->text(), "mix.wav");
  answer("wavExport", files_ / "other");
  ASSERT_TRUE(spinUntil([&] { return !model().showsExport(); }));
  EXPECT_EQ(bytes(files_ / "mix.wav"), "an older mix");

  OfflineExporter::renderFile({Song::demo(), {}, {}}, files_ / "reference.wav", {});
  EXPECT_TRUE(bytes(files_ / "other.wav") == bytes(files_ / "reference.wav"));
  const fs::path temporary = *model().exportURL();
  EXPECT_TRUE(fs::exists(temporary));
  windows_.reset();
  bench_.model.reset();
  EXPECT_FALSE(fs::exists(temporary));
}

TEST_F(AudioFileActionsTest, KeepsTheExportUntilItIsSafeInItsPlace) {
  std::ofstream(files_ / "mix.wav") << "an older mix";
  {
    const FullDisk disk(100000);
    exportIt();
    awaitError(".wav: File too large");
    EXPECT_FALSE(model().exportURL());
  }
  exportIt();
  ASSERT_TRUE(awaitShown("wavExport"));
  {
    const FullDisk disk(100000);
    answer("wavExport", files_ / "new.wav");
    awaitError("Export failed: new.wav: File too large");
    EXPECT_FALSE(fs::exists(files_ / "new.wav"));
  }
  ASSERT_TRUE(awaitShown("wavExport"));
  EXPECT_EQ(find("wavExport")->windowTitle(), "Export failed: new.wav: File too large");
  exportIt();  // not before this one is dealt with
  EXPECT_FALSE(model().exportTask());
  answer("wavExport", files_ / "new.wav");
  ASSERT_TRUE(spinUntil([&] { return !model().showsExport(); }));
  EXPECT_EQ(fs::file_size(files_ / "new.wav"), fs::file_size(*model().exportURL()));
}

TEST_F(AudioFileActionsTest, ShowsAndSpeaksTheProgressAndCancels) {
  model().changeClip(model().song().clips[0].id, {.startBeat = 3000});
  exportIt();
  ASSERT_TRUE(isShown("audioProgress.cancel"));
  const auto* bar = find<QProgressBar>("audioProgress.bar");
  EXPECT_TRUE(spinUntil([&] { return bar->value() > 0; }));
  QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(find("audioProgress.bar"));
  EXPECT_EQ(spoken->text(QAccessible::Name), "Exporting WAV…");
  EXPECT_EQ(spoken->valueInterface()->currentValue(), bar->value());
  find("audioProgress.cancel")->setFocus(Qt::TabFocusReason);
  press(Qt::Key_Return);
  EXPECT_TRUE(awaitShown("audioProgress", false));
  EXPECT_FALSE(model().exportTask() || model().exportURL() || model().isPlaying());
  EXPECT_EQ(bench_.error(), "");

  bench_.microphone->onStart = [&] { EXPECT_TRUE(awaitShown("audioProgress")); };
  model().startRecording();
  EXPECT_FALSE(find("audioProgress.cancel")->isVisible());
  EXPECT_EQ(spoken->text(QAccessible::Name), "Preparing audio…");
  EXPECT_TRUE(awaitShown("audioProgress", false));
}

}  // namespace
}  // namespace velmora
