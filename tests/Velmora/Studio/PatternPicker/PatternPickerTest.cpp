#include <QAccessible>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include "Velmora/Studio/PatternPicker/PatternEditorView.h"
#include "tests/support/ModelBench.h"
#include "tests/support/Songs.h"

namespace velmora {
namespace {

using testing::spinUntil;
using testing::uuid;

class PatternPickerTest : public ::testing::Test {
 protected:
  PatternPickerTest() : bench_(testing::sampleSong()), view_(model_, editors()) {
    view_.resize(900, 400);
    view_.show();
    view_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view_));
  }

  /// Editors that tell which and the how many-eth they are.
  PatternEditors editors() {
    const auto make = [this](const QString& kind) {
      return [this, kind](const UUID&, const UUID&, QWidget* parent) {
        return new QLabel(kind + QString::number(++made_), parent);
      };
    };
    return {.stepGrid = make("grid "),
            .pianoRoll = make("roll "),
            .audio = [make = make("audio ")](const UUID& trackID, QWidget* parent) {
              return make({}, trackID, parent);
            }};
  }

  PatternPicker& picker() { return view_.picker(); }

  /// The words under the picker, once the view has seen all changes.
  QString shown() {
    QCoreApplication::processEvents();
    if (auto* const label = qobject_cast<QLabel*>(view_.editor())) return label->text();
    QString text;
    for (const QLabel* label : view_.editor()->findChildren<QLabel*>()) text += label->text() + '|';
    return text;
  }

  /// The rows of the menu that a button opens; presses the one with the text.
  QString choose(QAbstractButton& button, const QString& text = {}) {
    QCoreApplication::processEvents();
    button.click();
    auto& menu = dynamic_cast<QMenu&>(*QApplication::activePopupWidget());
    QString rows;
    QAction nothing;
    QAction* chosen = &nothing;
    for (QAction* const row : menu.actions()) {
      rows += (row->isChecked() ? "*" : row->isEnabled() ? "" : "-") + row->text() + '|';
      if (row->text() == text) chosen = row;
    }
    chosen->trigger();
    menu.close();
    QCoreApplication::processEvents();
    return rows;
  }

  int made_ = 0;
  testing::ModelBench bench_;
  AppModel& model_ = *bench_.model;
  PatternEditorView view_;
};

TEST_F(PatternPickerTest, ShowsTheEditorOfTheSelectedTrack) {
  EXPECT_EQ(shown(), "grid 1");
  EXPECT_EQ(choose(picker().tracks(), "Bass"), "*Drums|Bass|Take||Add Drums|");
  EXPECT_EQ(shown(), "Choose an instrument track, or add drums to start a beat.|");  // without a pattern
  model_.selectPattern(uuid(12), uuid(2));
  EXPECT_EQ(shown(), "roll 2");
  model_.renamePattern(uuid(12), "Tune");
  EXPECT_EQ(shown(), "roll 2");  // an edit keeps the editor
  model_.newPattern(uuid(2));
  EXPECT_EQ(shown(), "roll 3");
  choose(picker().tracks(), "Take");
  EXPECT_EQ(shown(), "audio 4");
  for (const std::uint8_t id : {1, 2, 3}) model_.deleteTrack(uuid(id));
  EXPECT_EQ(shown(), "Choose an instrument track, or add drums to start a beat.|");
  EXPECT_EQ(choose(picker().tracks()), "|Add Drums|");
  QTest::mouseClick(view_.editor()->findChild<QPushButton*>(), Qt::LeftButton);
  EXPECT_EQ(shown(), "grid 5");
  EXPECT_EQ(choose(picker().tracks(), "Add Drums"), "*Drums 1||Add Drums|");
  EXPECT_EQ(model_.song().tracks.size(), 2U);
}

TEST_F(PatternPickerTest, SaysWhatCanBeDone) {
  const std::pair<std::uint8_t, QString> rows[] = {{1, "Drums (Drums), Beat (Beat), play, act"},
                                                   {2, "Bass (Bass), No Pattern (None), act"},
                                                   {3, "Take (Take), No Pattern (None)"},
                                                   {0, "Choose Track (None), No Pattern (None)"}};
  const auto words = [](PickerButton& button) {
    const QString spoken = QAccessible::queryAccessibleInterface(&button)->text(QAccessible::Value);
    return button.choice().text + " (" + spoken + ')';
  };
  for (const auto& [trackID, expected] : rows) {
    model_.selectTrack(trackID ? std::optional(uuid(trackID)) : std::nullopt);
    QCoreApplication::processEvents();
    EXPECT_EQ(words(picker().tracks()) + ", " + words(picker().patterns()) +
                  (picker().patterns().isEnabled() && picker().playPatterns().isEnabled() ? ", play" : "") +
                  (picker().actions().isEnabled() ? ", act" : ""),
              expected);
  }
  model_.selectTrack(uuid(2));
  EXPECT_EQ(choose(picker().actions()), "New Pattern|-Duplicate Pattern|-Rename Pattern|");
}

TEST_F(PatternPickerTest, RenamesInASheet) {
  const auto name = [this] { return model_.song().pattern(uuid(11))->name; };
  choose(picker().actions(), "Rename Pattern");
  RenamePatternSheet* const sheet = picker().renaming();
  ASSERT_TRUE(sheet && spinUntil([&] { return model_.isEditingText(); }));
  for (const char* const blank : {"", "  ", "\t\u00A0 "}) {
    sheet->name().setText(blank);
    EXPECT_FALSE(sheet->saveButton().isEnabled()) << blank;
    QTest::keyClick(&sheet->name(), Qt::Key_Return);
  }
  EXPECT_EQ(name(), "Beat");
  sheet->name().setText("  Pattern 1 ");
  sheet->saveButton().setFocus();
  EXPECT_FALSE(model_.isEditingText());
  QTest::keyClick(&sheet->name(), Qt::Key_Return);
  EXPECT_EQ(name(), "Pattern 1");
  EXPECT_TRUE(spinUntil([&] { return !picker().renaming(); }));
  choose(picker().actions(), "Rename Pattern");
  picker().renaming()->name().setText("Other");
  QTest::keyClick(picker().renaming(), Qt::Key_Escape);
  EXPECT_EQ(name(), "Pattern 1");
  EXPECT_FALSE(model_.isEditingText());
}

TEST_F(PatternPickerTest, MakesAndChoosesPatterns) {
  model_.renamePattern(uuid(11), "Pattern 1");
  choose(picker().actions(), "Duplicate Pattern");
  EXPECT_EQ(model_.selectedPattern()->name, "Pattern 1 Copy");
  choose(picker().patterns(), "Pattern 1");
  choose(picker().actions(), "Duplicate Pattern");
  EXPECT_EQ(model_.selectedPattern()->name, "Pattern 1 Copy 2");
  choose(picker().actions(), "New Pattern");
  EXPECT_EQ(choose(picker().patterns()), "Pattern 1|Pattern 1 Copy|Pattern 1 Copy 2|*Pattern 2|");
}

TEST_F(PatternPickerTest, PlaysThePatternsAndNeverStops) {
  bench_.open();
  model_.play();
  bench_.device->pull(4096);
  for (int presses = 0; presses < 3; ++presses) {
    if (presses == 2) model_.stop();
    QTest::mouseClick(&picker().playPatterns(), Qt::LeftButton);
    EXPECT_EQ(model_.mode(), PlaybackMode::pattern);
    EXPECT_TRUE(model_.isPlaying());
    EXPECT_EQ(model_.transport().playhead(), 0);
  }
}

}  // namespace
}  // namespace velmora
