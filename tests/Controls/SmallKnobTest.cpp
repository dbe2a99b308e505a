#include <QAccessible>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "Controls/SmallKnob.h"

namespace controls {
namespace {

class SmallKnobTest : public testing::Test {
 protected:
  SmallKnobTest() {
    knob.setRange({-12, 12});
    knob.onStarted = [this] { heard += "start "; };
    knob.onChanged = [this](float value) { heard += QString("%1 ").arg(std::lround(value * 100)); };
    knob.onEnded = [this](float value) { heard += QString("end %1 ").arg(std::lround(value * 100)); };
    knob.valueText = [](float value) { return QString("%1 decibels").arg(std::lround(value)); };
    knob.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&knob));
  }

  std::string drag(QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mousePress(&knob, Qt::LeftButton, modifiers, from);
    QMouseEvent move(QEvent::MouseMove, to, to, Qt::NoButton, Qt::LeftButton, modifiers);
    QApplication::sendEvent(&knob, &move);
    QTest::mouseRelease(&knob, Qt::LeftButton, modifiers, to);
    return std::exchange(heard, {}).toStdString();
  }

  bool wheel(int delta, Qt::KeyboardModifiers modifiers = {}) {
    QWheelEvent event({19, 19}, {19, 19}, {}, {0, delta}, {}, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&knob, &event);
    return event.isAccepted();
  }

  QString heard;
  SmallKnob knob;
};

TEST_F(SmallKnobTest, dragsTurnIt) {
  knob.setValue(-12);
  EXPECT_EQ(drag({19, 37}, {19, -1}), "start 1200 end 1200 ");
  EXPECT_EQ(drag({19, 19}, {38, 0}), "start end 1200 ");
  EXPECT_EQ(drag({19, 19}, {0, 19}, Qt::ShiftModifier), "start 1080 end 1080 ");
  EXPECT_EQ(drag({19, 19}, {19, 19}), "start end 1080 ");
  knob.onChanged = [this](float) { knob.setValue(3); };  // the model has the last word
  EXPECT_EQ(drag({19, 19}, {0, 19}), "start end 300 ");
}

TEST_F(SmallKnobTest, aDoubleClickReturnsToTheDefaultAndHidingEndsADrag) {
  knob.setDefaultValue(2);
  QTest::mouseDClick(&knob, Qt::LeftButton);
  QTest::mousePress(&knob, Qt::LeftButton);
  knob.hide();
  EXPECT_EQ(heard.toStdString(), "200 end 200 start end 200 ");
}

TEST_F(SmallKnobTest, theWheelTurnsOnlyTheKnobThatThePointerWasMovedTo) {
  EXPECT_FALSE(wheel(120));
  QTest::mouseMove(&knob, {19, 19});
  EXPECT_FALSE(wheel(120, Qt::ShiftModifier));
  EXPECT_EQ(knob.value(), 0);
  EXPECT_TRUE(wheel(120));
  EXPECT_NEAR(knob.value(), knob.step() * static_cast<float>(QApplication::wheelScrollLines()), 1e-5F);
  EXPECT_TRUE(wheel(-12000) && wheel(-120));  // the page must not scroll on at the end of the range
  EXPECT_EQ(knob.value(), -12);
}

TEST_F(SmallKnobTest, keysStepWhileFocused) {
  const std::pair<Qt::Key, float> rows[] = {{Qt::Key_Up, 0.1F}, {Qt::Key_Right, 0.2F}, {Qt::Key_Down, 0.1F},
                                            {Qt::Key_Left, 0},  {Qt::Key_PageUp, 1},   {Qt::Key_PageDown, 0},
                                            {Qt::Key_End, 12},  {Qt::Key_Up, 12},      {Qt::Key_Home, -12}};
  knob.setStep(0.1F);
  knob.setFocus();
  for (const auto& [key, expected] : rows) {
    QTest::keyClick(&knob, key, Qt::ControlModifier);  // not the knob's
    QTest::keyClick(&knob, key);
    EXPECT_NEAR(knob.value(), expected, 1e-5F) << key;
  }
  for (int i = 0; i < 120; ++i) QTest::keyClick(&knob, Qt::Key_Up);
  EXPECT_EQ(knob.value(), 0) << "many small steps must meet the zero";
}

TEST_F(SmallKnobTest, aScreenReaderReadsAndTurnsIt) {
  auto* seen = QAccessible::queryAccessibleInterface(&knob);
  EXPECT_EQ(seen->role(), QAccessible::Dial);
  seen->valueInterface()->setCurrentValue(6.0);
  EXPECT_EQ(seen->text(QAccessible::Value), "6 decibels");
  seen->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
  seen->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
  EXPECT_EQ(heard, "600 end 600 624 end 624 600 end 600 ");
}

TEST_F(SmallKnobTest, thePointerTravelsFromTheLowerLeftByTheTopToTheLowerRight) {
  const std::pair<float, QPointF> bars[] = {{-12, {-44.1, 60.7}}, {0, {0, -75}}, {12, {44.1, 60.7}}};
  knob.resize(200, 240);
  for (const auto& [value, center] : bars) {
    knob.setValue(value);
    const QImage image = knob.grab().toImage();
    for (double radius :
         {0.63, 0.7, 1.3}) {  // the bar reaches from two thirds of its distance to four thirds
      const QColor color = image.pixelColor((QPointF(100, 120) + center * radius).toPoint());
      EXPECT_EQ(color == Qt::black, radius > 0.65) << value << " " << radius;
    }
  }
}

}  // namespace
}  // namespace controls
