#include <QAccessible>
#include <QTest>
#include <gtest/gtest.h>

#include "Keyboard/Keyboard.h"

namespace keyboard {
namespace {

using tonic::Pitch;

class KeyboardTest : public testing::Test {
 protected:
  KeyboardTest() {
    keyboard.onNotes([this](Pitch pitch, QPointF) { heard += QString("+%1 ").arg(pitch.intValue()); },
                     [this](Pitch pitch) { heard += QString("-%1 ").arg(pitch.intValue()); });
    keyboard.resize(600, 100);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    begin();
  }

  void begin() {
    heard.clear();
    keyboard.setEnabled(true);
    keyboard.show();
    keyboard.setFocus(Qt::TabFocusReason);
  }

  QPoint at(int pitch) const { return keyboard.frameOf(Pitch(pitch)).center().toPoint() + QPoint(0, 15); }
  void press(int pitch) { QTest::mousePress(&keyboard, Qt::LeftButton, {}, at(pitch)); }

  QString heard;
  QWidget window;
  Keyboard keyboard{{{PitchRange::twoOctavesFrom(48)}}, &window};
};

TEST_F(KeyboardTest, theMousePlaysGlissandi) {
  press(48);
  for (int pitch : {50, 52, 54}) QTest::mouseMove(&keyboard, at(pitch));
  QTest::mouseRelease(&keyboard, Qt::LeftButton, {}, at(54));
  QTest::mouseMove(&keyboard, at(60));
  QTest::mousePress(&keyboard, Qt::RightButton, {}, at(60));
  EXPECT_EQ(heard.toStdString(), "+48 -48 +50 -50 +52 -52 +54 -54 ");
}

TEST_F(KeyboardTest, fingersPlayChords) {
  const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
  QTest::touchEvent(&keyboard, screen.get()).press(1, at(48)).press(2, at(52));
  QTest::touchEvent(&keyboard, screen.get()).release(1, at(48)).stationary(2);
  QTest::touchEvent(&keyboard, screen.get()).move(2, at(53));
  keyboard.releaseAll();
  QTest::touchEvent(&keyboard, screen.get()).move(2, at(55));  // silent until it is pressed again
  EXPECT_EQ(heard.toStdString(), "+48 +52 -48 -52 +53 -53 ");
}

TEST_F(KeyboardTest, noKeyHangs) {
  QEvent passive(QEvent::WindowDeactivate);
  const std::pair<const char*, std::function<void()>> losses[] = {
      {"hidden", [this] { keyboard.hide(); }},
      {"without focus", [this] { keyboard.clearFocus(); }},
      {"in a passive window", [&] { QApplication::sendEvent(&keyboard, &passive); }},
      {"disabled", [this] { keyboard.setEnabled(false); }},
      {"on other keys", [this] { keyboard.setKeyboardLayout({{PitchRange::twoOctavesFrom(60)}}); }}};
  for (const auto& [name, lose] : losses) {
    begin();
    press(60);
    QTest::keyPress(&keyboard, Qt::Key_Space);
    lose();
    QTest::mouseMove(&keyboard, at(64));
    QTest::mouseRelease(&keyboard, Qt::LeftButton);
    QTest::keyRelease(&keyboard, Qt::Key_Space);
    EXPECT_EQ(heard.toStdString(), "+60 +48 -48 -60 ") << name;
  }
}

TEST_F(KeyboardTest, theComputersKeysFindAndPlayEveryKey) {
  const std::pair<Qt::Key, int> moves[] = {{Qt::Key_Right, 49}, {Qt::Key_Up, 61},   {Qt::Key_Left, 60},
                                           {Qt::Key_End, 72},   {Qt::Key_Home, 48}, {Qt::Key_PageUp, 60}};
  for (const auto& [key, pitch] : moves) {
    QTest::keyClick(&keyboard, key);
    EXPECT_EQ(keyboard.currentPitch(), Pitch(pitch)) << key;
  }
  QTest::keyPress(&keyboard, Qt::Key_Return);
  QTest::keyPress(&keyboard, Qt::Key_Left);
  QTest::keyRelease(&keyboard, Qt::Key_Return);
  EXPECT_EQ(heard.toStdString(), "+60 -60 ");
}

TEST_F(KeyboardTest, aScreenReaderFindsAndPlaysEveryKey) {
  auto* seen = QAccessible::queryAccessibleInterface(&keyboard);
  ASSERT_EQ(seen->childCount(), 25);
  for (int i = 0; i < 25; ++i) {
    auto* key = seen->child(i);
    EXPECT_EQ(key->text(QAccessible::Name), QString("MIDI note %1").arg(48 + i));
    EXPECT_EQ(seen->indexOfChild(key), i);
    const QPoint middle = keyboard.mapToGlobal(at(48 + i));
    EXPECT_EQ(seen->childAt(middle.x(), middle.y()), key);
  }
  auto* key = seen->child(12);
  key->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(key->state().pressed);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !key->state().pressed; }));
  EXPECT_EQ(heard.toStdString(), "+60 -60 ");
  key->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
  EXPECT_EQ(seen->focusChild(), key);
  keyboard.setKeyboardLayout({{PitchRange::twoOctavesFrom(120)}});
  EXPECT_EQ(seen->childCount(), 8);
  EXPECT_FALSE(key->isValid());
}

TEST_F(KeyboardTest, keysShowWhatTheyAre) {
  PianoKeyLook look;
  look.naturalColor = Qt::white;
  look.darkColor = Qt::blue;
  look.activeColor = Qt::red;
  keyboard.setContent(PianoKey{look});
  press(50);
  const QImage image = keyboard.grab().toImage();
  const std::pair<int, QColor> colors[] = {{49, Qt::blue}, {50, Qt::red}, {51, Qt::blue}, {52, Qt::white}};
  for (const auto& [pitch, color] : colors) EXPECT_EQ(image.pixelColor(at(pitch)), color) << pitch;
}

}  // namespace
}  // namespace keyboard
