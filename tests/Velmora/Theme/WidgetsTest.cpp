#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleOptionSlider>
#include <QTest>
#include <gtest/gtest.h>
#include <vector>

#include "Velmora/Theme/IconButton.h"
#include "Velmora/Theme/SegmentedPicker.h"
#include "Velmora/Theme/ToggleChip.h"

namespace velmora {
namespace {

struct Window : QWidget {
  Window() { new QHBoxLayout(this); }
  template <class Widget>
  Widget& add(Widget* widget) {
    layout()->addWidget(widget);
    return *widget;
  }
  void open() {
    show();
    activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(this));
  }
};

TEST(WidgetsTest, ClicksOnButtonsLeaveTheFocusAndTabReachesThem) {
  Window window;
  auto& field = window.add(new QLineEdit);
  auto& list = window.add(new QComboBox);
  auto& push = window.add(new QPushButton("Cancel"));
  auto& icon = window.add(new IconButton("trash", "Delete"));
  window.open();
  field.setFocus();
  for (QWidget* const widget : {static_cast<QWidget*>(&push), static_cast<QWidget*>(&icon)}) {
    QTest::mouseClick(widget, Qt::LeftButton);
    EXPECT_TRUE(field.hasFocus());
  }
  for (QWidget* const widget :
       {static_cast<QWidget*>(&list), static_cast<QWidget*>(&push), static_cast<QWidget*>(&icon)}) {
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(widget->hasFocus());
  }
  int presses = 0;
  QObject::connect(&icon, &QAbstractButton::clicked, [&] { ++presses; });
  QTest::keyClick(&icon, Qt::Key_Return);
  QTest::keyClick(&icon, Qt::Key_Space);
  EXPECT_EQ(presses, 2);
}

TEST(WidgetsTest, ThePickerFollowsClicksAndArrowsAndTakesBackWhatIsRefused) {
  Window window;
  auto& picker = window.add(new SegmentedPicker("Workspace", {"Arrange", "Editor", "Mixer"}));
  auto& other = window.add(new SegmentedPicker("Mode", {"Pattern", "Song"}));
  picker.setSelected(0);
  other.setSelected(1);
  std::vector<int> choices;
  picker.onSelect = [&](int index) { choices.push_back(index); };
  window.open();
  const auto segments = picker.findChildren<QAbstractButton*>();

  QTest::mouseClick(segments[2], Qt::LeftButton);
  segments[2]->setFocus();
  QTest::keyClick(segments[2], Qt::Key_Left);
  QTest::keyClick(segments[1], Qt::Key_Left);
  EXPECT_EQ(choices, (std::vector{2, 1, 0}));
  EXPECT_EQ(picker.selected(), 0);
  EXPECT_TRUE(segments[0]->hasFocus());

  picker.onSelect = [&](int) { picker.setSelected(0); };
  QTest::mouseClick(segments[1], Qt::LeftButton);
  EXPECT_EQ(picker.selected(), 0);
  EXPECT_EQ(other.selected(), 1);

  auto* const spoken = QAccessible::queryAccessibleInterface(&picker);
  EXPECT_EQ(spoken->role(), QAccessible::Grouping);
  EXPECT_EQ(spoken->text(QAccessible::Value), "Arrange");
  ASSERT_EQ(spoken->childCount(), 3);
  EXPECT_EQ(spoken->child(1)->role(), QAccessible::RadioButton);
  EXPECT_EQ(spoken->child(1)->text(QAccessible::Name), "Editor");
}

TEST(WidgetsTest, AChipShowsOnlyWhatItIsTold) {
  ToggleChip chip("M", "Mute Bass", Theme::yellow);
  int presses = 0;
  QObject::connect(&chip, &QAbstractButton::clicked, [&] { ++presses; });
  QTest::mouseClick(&chip, Qt::LeftButton);
  EXPECT_EQ(presses, 1);
  EXPECT_FALSE(chip.isOn());
  chip.setOn(true);
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(&chip)->state().checked);
}

TEST(WidgetsTest, APressedButtonIsLitAndWithoutMotionAtOnce) {
  IconButton button("trash", "Delete");
  const auto ground = [&] { return button.grab().toImage().pixelColor(22, 3); };
  const QColor atRest = ground();
  Theme::setReducesMotion(true);
  QTest::mousePress(&button, Qt::LeftButton);
  EXPECT_EQ(ground(), Theme::raised);
  Theme::setReducesMotion(false);
  QTest::mouseRelease(&button, Qt::LeftButton);
  EXPECT_TRUE(QTest::qWaitFor([&] { return ground() == atRest; }));
}

TEST(WidgetsTest, AScrollBarIsSliderAndPagesAndNothingElse) {
  QScrollBar bar(Qt::Vertical);
  bar.resize(bar.sizeHint().width(), 300);
  for (const auto& [maximum, value] : {std::pair{100, 0}, {100, 37}, {100, 100}, {1000000, 400000}, {0, 0}}) {
    bar.setRange(0, maximum);
    bar.setPageStep(50);
    bar.setValue(value);
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = Qt::Vertical;
    option.maximum = maximum;
    option.pageStep = 50;
    option.sliderPosition = value;
    const auto part = [&](QStyle::SubControl which) {
      return bar.style()->subControlRect(QStyle::CC_ScrollBar, &option, which, &bar);
    };
    const QRect slider = part(QStyle::SC_ScrollBarSlider);
    EXPECT_GE(slider.height(), 32);
    EXPECT_EQ(part(QStyle::SC_ScrollBarSubPage).height(), slider.top());
    EXPECT_EQ(part(QStyle::SC_ScrollBarAddPage).height(), 300 - slider.top() - slider.height());
    EXPECT_TRUE(part(QStyle::SC_ScrollBarAddLine).isEmpty());
  }
}

}  // namespace
}  // namespace velmora
