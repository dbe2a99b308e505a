#include <QAccessible>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <QTest>
#include <fstream>
#include <gtest/gtest.h>

#include "Platform/Audio/AudioFile.h"
#include "Velmora/Studio/AudioEditor/AudioEditorView.h"
#include "tests/support/FullDisk.h"
#include "tests/support/ModelBench.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::spinUntil;

class AudioEditorViewTest : public ::testing::Test {
 protected:
  AudioEditorViewTest() {
    bench_.open();
    model_.addTrack(TrackKind::audio());
    view_.emplace(model_, voice());
    view_->resize(900, 420);
    view_->show();
    view_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&*view_));
  }

  UUID voice() const { return model_.song().tracks.back().id; }

  fs::path soundFile(const std::string& name, float level = 0.5F) const {
    const fs::path path = bench_.folder / name;
    platform::AudioFileWriter writer(path, 44100, platform::AudioFileWriter::SampleFormat::float32);
    const std::vector<float> tone(66150, level);
    writer.write(tone, tone);
    writer.close();
    return path;
  }
  void import(const std::string& name, double beat, float level = 0.5F) {
    auto importing = model_.importAudio(soundFile(name, level), {voice(), beat, {}});
    ASSERT_TRUE(spinUntil([&] { return importing.isReady(); }));
    QCoreApplication::processEvents();
  }

  template <class Widget = QAbstractButton>
  Widget& part(const char* name) {
    return *view_->findChild<Widget*>(name);
  }
  void click(const char* name) {
    QTest::mouseClick(&part(name), Qt::LeftButton);
    QCoreApplication::processEvents();
  }
  /// What is written in the view, whether the waveform is drawn by now or not.
  std::string words() {
    QCoreApplication::processEvents();
    QStringList words;
    for (const QWidget* const widget : view_->findChildren<QWidget*>()) {
      if (!widget->isVisible()) continue;
      if (const auto* const label = qobject_cast<const QLabel*>(widget)) words << label->text();
      const auto* const button = qobject_cast<const QAbstractButton*>(widget);
      if (button) words << (button->isChecked() ? '*' + button->text() : button->text());
    }
    words.removeAll({});
    words.removeAll("Drawing waveform…");
    return words.join('|').toStdString();
  }

  void record() {
    click("audio.record");
    std::ofstream(bench_.microphone->file) << "a take";
  }
  bool drop(const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({20, 20}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(view_->viewport(), &enter);
    EXPECT_EQ(part<QWidget>("audio.dropFrame").isVisible(), enter.isAccepted());
    if (!enter.isAccepted()) return false;
    QDropEvent drop({20, 20}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(view_->viewport(), &drop);
    return drop.isAccepted();
  }

  testing::ModelBench bench_;
  AppModel& model_ = *bench_.model;
  std::optional<AudioEditorView> view_;
};

TEST_F(AudioEditorViewTest, ShowsTheSelectedClipOrTheFirst) {
  const std::string controls = "Import Audio|Record|";
  EXPECT_EQ(words(), controls +
                         "Add Some Audio|Record a take or import an audio file. Your clip appears at the "
                         "playhead.");
  import("Voice.wav", 4);
  import("Other.wav", 9.75, 1);
  EXPECT_EQ(words(), controls + "Other|1.5 seconds · Plays at original speed|Beat 4|*Beat 9");
  ASSERT_TRUE(spinUntil([&] { return view_->waveform().buffer() != nullptr; }));
  EXPECT_EQ(view_->waveform().buffer()->samples[1], 1);

  const UUID second = *model_.selectedClipID();
  QTest::mouseClick(view_->findChildren<QAbstractButton*>("audio.clip")[0], Qt::LeftButton);
  EXPECT_EQ(model_.selectedClipID(), model_.song().clipsForTrack(voice())[0].id);
  EXPECT_EQ(words(), controls + "Voice|1.5 seconds · Plays at original speed|*Beat 4|Beat 9");
  ASSERT_TRUE(spinUntil([&] { return view_->waveform().buffer() != nullptr; }));
  EXPECT_EQ(view_->waveform().buffer()->samples[1], 0.5F);

  view_->findChildren<QAbstractButton*>("audio.clip")[0]->setFocus();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
  EXPECT_EQ(model_.selectedClipID(), second);
  model_.deleteSelectedClip();
  EXPECT_EQ(words(), "Import Audio|Record|Voice|1.5 seconds · Plays at original speed|*Beat 4");
}

TEST(AudioWaveformViewTest, TellsOfItsWorkUntilTheOverviewIsThere) {
  AudioWaveformView view;
  view.resize(300, 100);
  view.show();
  auto& drawn = static_cast<waveform::Waveform&>(*view.findChild<QWidget*>("audio.waveform"));
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&drawn)->text(QAccessible::Name), "Audio waveform");
  for (const float level : {0.5F, 0.25F}) {
    view.show(std::make_shared<const AudioSample>(AudioSample{std::vector<float>(100), 44100}), Qt::red);
    view.show(std::make_shared<const AudioSample>(AudioSample{std::vector<float>(66150, level), 44100}),
              Qt::red);
    EXPECT_EQ(view.findChild<QProgressBar*>()->isVisible(), !view.buffer());
    EXPECT_EQ(drawn.isVisible(), view.buffer() != nullptr);
    EXPECT_EQ(view.findChild<QLabel*>()->text(), "Drawing waveform…");
    ASSERT_TRUE(spinUntil([&] { return drawn.isVisible(); }));
    EXPECT_EQ(drawn.renderer().samples(), view.buffer());
    EXPECT_EQ(drawn.renderer().length(), 2 * 2068);
    EXPECT_EQ(view.buffer()->samples[1], level);
    EXPECT_FALSE(view.findChild<QProgressBar*>()->isVisible());
  }
}

TEST_F(AudioEditorViewTest, AClipWithoutItsFileKeepsItsRow) {
  import("Voice.wav", 4);
  const UUID song = model_.song().id;
  for (const auto& entry : fs::directory_iterator(bench_.folder / song.text() / "audio"))
    fs::remove(entry.path());
  auto opening = model_.openProject(song);
  ASSERT_TRUE(spinUntil([&] { return opening.isReady(); }));
  EXPECT_EQ(words(), "Import Audio|Record|Voice|1.5 seconds · Plays at original speed|*Beat 4");
  EXPECT_FALSE(view_->waveform().isVisible());
}

TEST_F(AudioEditorViewTest, TheWaveformTakesWhatThePaneLeaves) {
  import("Voice.wav", 4);
  const std::pair<int, int> heights[] = {{100, 100}, {300, 100}, {321, 101}, {539, 319}, {1000, 320}};
  for (const auto& [pane, waveform] : heights) {
    view_->resize(900, pane);
    EXPECT_TRUE(spinUntil([&, expected = waveform] { return view_->waveform().height() == expected; }))
        << pane;
  }
}

TEST_F(AudioEditorViewTest, ImportsWhatIsChosenOrDropped) {
  click("audio.import");
  EXPECT_TRUE(model_.showsAudioImport());
  model_.seek(3.4);
  const QUrl file = QUrl::fromLocalFile(QString::fromStdString(soundFile("Ätherisch.wav")));
  EXPECT_FALSE(drop({}));
  EXPECT_FALSE(drop({file, file}));
  EXPECT_FALSE(drop({QUrl("https://example.org/a.wav")}));
  EXPECT_TRUE(drop({file}));
  EXPECT_FALSE(drop({file}));  // while the first is on its way
  ASSERT_TRUE(spinUntil([&] { return !model_.isAudioBusy(); }));
  const std::vector<Clip> clips = model_.song().clipsForTrack(voice());
  ASSERT_EQ(clips.size(), 1U);
  EXPECT_EQ(clips[0].startBeat, 3);
  EXPECT_EQ(model_.song().audioAssets[0].name, "Ätherisch");
  EXPECT_TRUE(drop({QUrl::fromLocalFile("/nowhere.wav")}));
  ASSERT_TRUE(spinUntil([&] { return !model_.isAudioBusy(); }));
  EXPECT_EQ(bench_.error().rfind("Could not import audio: ", 0), 0U);
}

TEST_F(AudioEditorViewTest, RecordsAndKeepsTheTakeUntilItIsSaved) {
  record();
  EXPECT_EQ(words().substr(0, 51), "Import Audio|Stop Recording|Recording · 0 sec|Add ");
  bench_.microphone->end(false);
  const std::string card =
      "Your recorded take is waiting to be saved.|Retry Save|Save Original Take|Discard|";
  ASSERT_TRUE(spinUntil([&] { return model_.pendingTake().has_value(); }));
  EXPECT_TRUE(words().starts_with(card + "Import Audio|Record|"));
  for (int attempt = 0; attempt < 2; ++attempt) {
    model_.lastError.set({});
    click("audio.take.retry");
    ASSERT_TRUE(spinUntil([&] { return !model_.isAudioBusy() && !bench_.error().empty(); }));
    EXPECT_TRUE(words().starts_with(card));
  }

  const auto saveCopy = [this] {
    click("audio.take.saveOriginal");
    auto* const dialog = dynamic_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_TRUE(dialog);
    dialog->findChild<QLineEdit*>()->setText(QString::fromStdString(bench_.folder / "rescued"));
    QMetaObject::invokeMethod(dialog, "accept");
  };
  saveCopy();
  EXPECT_TRUE(spinUntil([&] {
    std::error_code missing;
    return fs::file_size(bench_.folder / "rescued.caf", missing) == 6;
  }));
  fs::remove(bench_.folder / "rescued.caf");
  const testing::FullDisk disk(3);
  saveCopy();
  EXPECT_TRUE(spinUntil(
      [&] { return bench_.error() == "Could not save the original take: rescued.caf: File too large"; }));
  EXPECT_FALSE(fs::exists(bench_.folder / "rescued.caf"));
  EXPECT_TRUE(model_.pendingTake());
}

TEST_F(AudioEditorViewTest, AsksBeforeATakeIsDiscarded) {
  record();
  bench_.microphone->end(false);
  ASSERT_TRUE(spinUntil([&] { return model_.pendingTake().has_value(); }));
  const auto answer = [this](const char* button) {
    click("audio.take.discard");
    EXPECT_TRUE(view_->confirmsDiscard());
    auto* const question = dynamic_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_TRUE(question);
    EXPECT_EQ(question->windowTitle() + '|' + question->accessibleDescription(),
              "Discard Recorded Take?|The unsaved recording will be removed from this device.");
    QTest::mouseClick(question->findChild<QAbstractButton*>(button), Qt::LeftButton);
    EXPECT_TRUE(spinUntil([&] { return !view_->confirmsDiscard(); }));
  };
  answer("confirmation.cancel");
  EXPECT_TRUE(model_.pendingTake() && fs::exists(bench_.microphone->file));
  answer("confirmation.accept");
  EXPECT_FALSE(model_.pendingTake() || fs::exists(bench_.microphone->file));
  EXPECT_TRUE(words().starts_with("Import Audio|Record|"));
}

}  // namespace
}  // namespace velmora
