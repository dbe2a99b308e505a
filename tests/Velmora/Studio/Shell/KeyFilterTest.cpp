#include <QTest>
#include <QtWidgets>
#include <gtest/gtest.h>

#include "Velmora/Studio/Shell/KeyFilter.h"

namespace velmora {
namespace {

constexpr std::array keys{Qt::Key_Space, Qt::Key_Return, Qt::Key_Delete,   Qt::Key_Backspace,
                          Qt::Key_Left,  Qt::Key_Home,   Qt::Key_PageDown, Qt::Key_A};

/// A window whose menus have an action on every key.
class KeyFilterTest : public ::testing::Test {
 protected:
  KeyFilterTest() {
    window_.setCentralWidget(&content_);
    for (const Qt::Key key : keys) {
      auto* action = new QAction(&window_);
      action->setShortcut(key);
      QObject::connect(action, &QAction::triggered, action, [this] { ++actions_; });
      window_.addAction(action);
    }
    window_.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
  }

  template <class Widget>
  Widget* add() {
    auto* widget = new Widget(&content_);
    widget->show();
    return widget;
  }

  void press(Qt::Key key) { QTest::keyClick(window_.windowHandle(), key); }

  /// Who gets each key: the menus' action or the widget.
  std::string shares(QWidget* widget, Qt::FocusReason reason) {
    std::string text;
    for (const Qt::Key key : keys) {
      widget->clearFocus();
      widget->setFocus(reason);
      const int before = actions_;
      press(key);
      text += actions_ > before ? 'A' : 'w';
    }
    return text;
  }

  Shared<bool> isEditingText_;
  KeyFilter filter_{isEditingText_};
  QMainWindow window_;
  QWidget content_;
  int actions_ = 0;
};

TEST_F(KeyFilterTest, SharesTheKeysByWhatHasTheFocus) {
  struct Row {
    const char* name;
    QWidget* widget;
    const char* otherwise;  // Space, Return, Delete, Backspace, Left, Home, Page Down, A
    const char* byTab;
  };
  auto* editable = add<QComboBox>();
  editable->setEditable(true);
  auto* list = add<QListWidget>();
  list->addItems({"one", "two"});
  auto* grid = add<QWidget>();
  grid->setProperty(KeyFilter::keepsEditingKeys, true);
  auto* plain = add<QWidget>();
  auto* keyboard = add<QWidget>();
  keyboard->setProperty(KeyFilter::keepsActivationKeys, true);
  for (QWidget* widget : {grid, plain, keyboard}) widget->setFocusPolicy(Qt::StrongFocus);

  const Row rows[] = {
      {"line edit", add<QLineEdit>(), "wwwwwwww", "wwwwwwww"},
      {"plain text edit", add<QPlainTextEdit>(), "wwwwwwww", "wwwwwwww"},
      {"text edit", add<QTextEdit>(), "wwwwwwww", "wwwwwwww"},
      {"spin box", add<QSpinBox>(), "wwwwwwww", "wwwwwwww"},
      {"editable combo box", editable, "wwwwwwww", "wwwwwwww"},
      {"push button", add<QPushButton>(), "AAAAAAAA", "wwAAAAAA"},
      {"tool button", add<QToolButton>(), "AAAAAAAA", "wwAAAAAA"},
      {"check box", add<QCheckBox>(), "AAAAAAAA", "wwAAAAAA"},
      {"combo box", add<QComboBox>(), "AAAAAAAA", "wwAAAAAA"},
      {"list", list, "AAwwwwwA", "wwwwwwwA"},
      {"table", add<QTableWidget>(), "AAwwwwwA", "wwwwwwwA"},
      {"slider", add<QSlider>(), "AAwwwwwA", "AAwwwwwA"},
      {"dial", add<QDial>(), "AAwwwwwA", "AAwwwwwA"},
      {"grid", grid, "AAwwwwwA", "AAwwwwwA"},
      {"keyboard", keyboard, "wwAAAAAA", "wwAAAAAA"},
      {"anything else", plain, "AAAAAAAA", "AAAAAAAA"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(shares(row.widget, Qt::OtherFocusReason), row.otherwise) << row.name;
    EXPECT_EQ(shares(row.widget, Qt::TabFocusReason), row.byTab) << row.name << " by Tab";
    isEditingText_.set(true);
    EXPECT_EQ(shares(row.widget, Qt::OtherFocusReason), "wwwwwwww") << row.name << " while text is edited";
    isEditingText_.set(false);
  }
}

TEST_F(KeyFilterTest, PressesAButtonThatTabCameToUntilTheMouseIsUsed) {
  int clicks = 0;
  auto* button = add<QPushButton>();
  QObject::connect(button, &QPushButton::clicked, button, [&] { ++clicks; });
  press(Qt::Key_Tab);
  ASSERT_TRUE(button->hasFocus());
  press(Qt::Key_Space);
  press(Qt::Key_Return);
  EXPECT_EQ(clicks, 2);
  EXPECT_EQ(actions_, 0);
  QTest::mouseClick(&window_, Qt::LeftButton, {}, {300, 300});
  press(Qt::Key_Space);
  EXPECT_EQ(clicks, 2);
  EXPECT_EQ(actions_, 1);
}

TEST_F(KeyFilterTest, LeavesTheMenusNothingWhileSomethingStandsOverTheWindow) {
  add<QPushButton>();
  QMenu menu;
  menu.addAction("Item");
  menu.popup({0, 0});
  press(Qt::Key_Space);
  menu.close();
  EXPECT_EQ(actions_, 0);

  for (const Qt::WindowModality modality : {Qt::WindowModal, Qt::NonModal}) {
    QDialog dialog(&window_);
    QPushButton button(&dialog);
    dialog.setWindowModality(modality);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    for (const Qt::Key key : keys) QTest::keyClick(dialog.windowHandle(), key);
    EXPECT_EQ(actions_, 0);
  }
  window_.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
  press(Qt::Key_Space);
  EXPECT_EQ(actions_, 1);
}

}  // namespace
}  // namespace velmora
