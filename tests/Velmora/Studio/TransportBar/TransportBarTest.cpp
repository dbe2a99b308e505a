#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <gtest/gtest.h>
#include <map>

#include "Velmora/Studio/TransportBar/BPMReadout.h"
#include "Velmora/Studio/TransportBar/TransportBar.h"
#include "Velmora/Theme/SegmentedPicker.h"
#include "tests/support/ModelBench.h"

namespace velmora {
namespace {

using testing::spinUntil;

/// Counts how often each named widget of a window is painted.
class PaintCounter final : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++counts[watched->objectName()];
    return false;
  }
  std::map<QString, int> counts;
};

class TransportBarTest : public ::testing::Test {
 protected:
  TransportBarTest() {
    window_.resize(900, 300);
    auto* const column = new QVBoxLayout(&window_);
    column->setContentsMargins(0, 0, 0, 0);
    column->addStretch();
    column->addWidget(&bar_);
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
  }

  AppModel& model() { return *bench_.model; }
  QWidget& piece(const QString& name) { return *bar_.findChild<QWidget*>(name); }
  QAccessibleInterface& spoken(const QString& name) {
    return *QAccessible::queryAccessibleInterface(&piece(name));
  }
  QString value(const QString& name) { return spoken(name).text(QAccessible::Value); }
  void click(const QString& name) {
    QTest::mouseClick(&piece(name), Qt::LeftButton);
    QCoreApplication::processEvents();
  }
  /// Serves all that is due in the next tenth of a second: time for what must not happen.
  static void serve() {
    bool isOver = false;
    QTimer::singleShot(100, [&] { isOver = true; });
    spinUntil([&] { return isOver; });
  }

  /// Opens the tempo's editor with a tap, types and presses the key.
  void typeTempo(const QString& text, Qt::Key key) {
    click("transport.tempo");
    ASSERT_TRUE(QApplication::activePopupWidget());
    EXPECT_TRUE(model().isEditingText());
    auto* const field = QApplication::activePopupWidget()->findChild<QLineEdit*>("tempo.text");
    EXPECT_EQ(field->selectedText(), QString::number(model().song().bpm));
    QTest::keyClicks(field, text);
    QTest::keyClick(field, key);
    expectClosed();
  }
  void expectClosed() {
    EXPECT_TRUE(spinUntil([&] { return !QApplication::activePopupWidget(); }));
    EXPECT_FALSE(model().isEditingText());
  }

  testing::ModelBench bench_;
  QWidget window_;
  TransportBar bar_{model()};
};

TEST_F(TransportBarTest, ItsButtonsRunTheTransport) {
  click("transport.play");
  EXPECT_TRUE(model().isPlaying());
  EXPECT_EQ(piece("transport.play").accessibleName(), "Pause");
  click("transport.play");
  EXPECT_FALSE(model().isPlaying());
  EXPECT_EQ(piece("transport.play").accessibleName(), "Play");
  model().seek(9);
  click("transport.returnToStart");
  EXPECT_EQ(model().transport().playhead(), 0);
  model().play();
  click("transport.stop");
  EXPECT_FALSE(model().isPlaying());
}

TEST_F(TransportBarTest, TheRecordButtonWaitsForSomethingToDo) {
  EXPECT_FALSE(piece("transport.record").isEnabled());
  int presses = 0;
  bar_.setOnRecord([&] { ++presses; });
  click("transport.record");
  EXPECT_EQ(presses, 1);
  EXPECT_EQ(piece("transport.record").toolTip(), "Record microphone");
}

TEST_F(TransportBarTest, ADragMovesTheTempoFromItsStartAndStopsAtTheLimits) {
  QWidget& tempo = piece("transport.tempo");
  const QPoint start = tempo.rect().center();
  QTest::mousePress(&tempo, Qt::LeftButton, {}, start);
  const struct {
    int up;
    double bpm;
  } rows[] = {{3, 128}, {8, 129}, {80, 138}, {2000, 300}, {1376, 300}, {1368, 299}, {-2000, 40}, {0, 128}};
  for (const auto& row : rows) {
    QTest::mouseMove(&tempo, start - QPoint(0, row.up));
    EXPECT_EQ(model().song().bpm, row.bpm) << row.up << " up";
  }
  QTest::mouseRelease(&tempo, Qt::LeftButton, {}, start);
  EXPECT_FALSE(QApplication::activePopupWidget());
  QTest::mouseMove(&tempo, start - QPoint(0, 40));
  EXPECT_EQ(model().song().bpm, 128);
}

TEST_F(TransportBarTest, ATappedTempoIsTyped) {
  typeTempo("120,5", Qt::Key_Return);
  EXPECT_EQ(model().song().bpm, 121);
  typeTempo("abc", Qt::Key_Return);
  typeTempo("90", Qt::Key_Escape);
  EXPECT_EQ(model().song().bpm, 121);
  EXPECT_EQ(value("transport.tempo"), "121 BPM");

  click("transport.tempo");
  QWidget* const popover = QApplication::activePopupWidget();
  ASSERT_TRUE(popover);
  QTest::mouseClick(popover, Qt::LeftButton, {}, QPoint(-30, -30));  // elsewhere
  expectClosed();

  click("transport.tempo");
  QTest::mouseClick(QApplication::activePopupWidget()->findChild<QWidget*>("tempo.cancel"), Qt::LeftButton);
  expectClosed();
}

TEST_F(TransportBarTest, TheKeyboardReachesTheTempo) {
  QWidget& tempo = piece("transport.tempo");
  tempo.setFocus(Qt::TabFocusReason);
  for (const auto& [key, bpm] : {std::pair{Qt::Key_Up, 129}, {Qt::Key_PageDown, 119}, {Qt::Key_Left, 118}}) {
    QTest::keyClick(&tempo, key);
    EXPECT_EQ(model().song().bpm, bpm);
  }
  QTest::keyClick(&tempo, Qt::Key_Space);
  EXPECT_TRUE(model().isEditingText());
  QApplication::activePopupWidget()->close();
}

TEST_F(TransportBarTest, OnlyThePositionMovesAndOnlyWhilePlaying) {
  model().play();
  serve();
  PaintCounter counter;
  for (QWidget* const widget : bar_.findChildren<QWidget*>()) widget->installEventFilter(&counter);
  bar_.installEventFilter(&counter);
  model().transport().publish(6.5);
  EXPECT_TRUE(spinUntil([&] { return value("transport.position") == "Bar 2, beat 3, step 3"; }));
  serve();
  EXPECT_EQ(counter.counts, (std::map<QString, int>{{"transport.position", 1}}));

  model().pause();
  serve();
  model().transport().publish(9);
  serve();
  EXPECT_EQ(value("transport.position"), "Bar 2, beat 3, step 3");
  model().seek(4);
  EXPECT_TRUE(spinUntil([&] { return value("transport.position") == "Bar 2, beat 1, step 1"; }));
}

TEST_F(TransportBarTest, TheModePickerShowsWhatTheModelHolds) {
  auto& picker = dynamic_cast<SegmentedPicker&>(piece("transport.mode"));
  EXPECT_EQ(value("transport.mode"), "Song");
  QTest::mouseClick(picker.childAt(10, 10), Qt::LeftButton);
  EXPECT_EQ(model().mode(), PlaybackMode::pattern);
  model().setMode(PlaybackMode::song);
  EXPECT_TRUE(spinUntil([&] { return value("transport.mode") == "Song"; }));
}

TEST_F(TransportBarTest, WhileATakeIsRecordedItsControlsStayLiveAndChangeNothing) {
  auto& picker = dynamic_cast<SegmentedPicker&>(piece("transport.mode"));
  bar_.setOnRecord([this] { model().startRecording(); });
  click("transport.record");
  ASSERT_TRUE(model().isRecording());
  EXPECT_EQ(piece("transport.record").accessibleName(), "Stop recording");
  QTest::mouseClick(picker.childAt(10, 10), Qt::LeftButton);
  EXPECT_EQ(value("transport.mode"), "Song");
  typeTempo("90", Qt::Key_Return);
  EXPECT_EQ(value("transport.tempo"), "128 BPM");
  click("transport.stop");
  EXPECT_TRUE(spinUntil([&] { return piece("transport.record").accessibleName() == "Record microphone"; }));
  EXPECT_TRUE(spinUntil([&] { return !model().isAudioBusy(); }));
}

TEST_F(TransportBarTest, SpeaksForItself) {
  const struct {
    const char* piece;
    const char* name;
    QAccessible::Role role;
    const char* value;
  } rows[] = {
      {"transport.returnToStart", "Return to start", QAccessible::Button, ""},
      {"transport.stop", "Stop", QAccessible::Button, ""},
      {"transport.play", "Play", QAccessible::Button, ""},
      {"transport.record", "Record microphone", QAccessible::Button, ""},
      {"transport.position", "Position", QAccessible::StaticText, "Bar 1, beat 1, step 1"},
      {"transport.tempo", "Tempo", QAccessible::SpinBox, "128 BPM"},
      {"transport.mode", "Playback mode", QAccessible::Grouping, "Song"},
      {"transport.engine", "Audio engine stopped", QAccessible::StaticText, ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(spoken(row.piece).text(QAccessible::Name), row.name);
    EXPECT_EQ(spoken(row.piece).role(), row.role) << row.piece;
    EXPECT_EQ(value(row.piece), row.value) << row.piece;
  }
  auto* const tempo = spoken("transport.tempo").actionInterface();
  tempo->doAction(QAccessibleActionInterface::increaseAction());
  EXPECT_EQ(model().song().bpm, 129);
  tempo->doAction(QAccessibleActionInterface::decreaseAction());
  EXPECT_EQ(model().song().bpm, 128);
  spoken("transport.tempo").valueInterface()->setCurrentValue(500);
  EXPECT_EQ(model().song().bpm, 300);
  model().configure();
  EXPECT_TRUE(
      spinUntil([&] { return piece("transport.engine").accessibleName() == "Audio engine running"; }));
}

TEST_F(TransportBarTest, ItsHeightFollowsItsWidth) {
  const struct {
    int width;
    bool isCompact;
    int height;
  } rows[] = {{900, false, 64}, {720, false, 110}, {540, true, 98}, {620, true, 56}, {1280, false, 64}};
  for (const auto& row : rows) {
    bar_.setCompact(row.isCompact);
    window_.resize(row.width, 300);
    EXPECT_TRUE(spinUntil([&] { return bar_.size() == QSize(row.width, row.height); })) << row.width;
  }
}

}  // namespace
}  // namespace velmora
