#include <QAccessible>
#include <QLabel>
#include <QTest>

#include "Velmora/Online/Updates/UpdateNotice.h"
#include "Velmora/Online/Updates/UpdateWindow.h"
#include "Velmora/Theme/Theme.h"
#include "tests/Velmora/Online/Updates/UpdaterBench.h"

namespace velmora {
namespace {

using testing::spinUntil;

struct Studio final : QWidget {
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Theme::background); }
};

class UpdateNoticeTest : public testing::UpdaterBench {
 protected:
  UpdateNoticeTest() {
    studio_.resize(520, 320);
    card_.place(studio_.rect());
    studio_.show();
    studio_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&studio_));
    updater_->start(model());
  }

  QAbstractButton& button(const char* name) { return *card_.findChild<QAbstractButton*>(name); }
  void click(const char* name) { QTest::mouseClick(&button(name), Qt::LeftButton); }

  /// What is written on the card, line by line; the main button in brackets if it can be pressed.
  QStringList words() {
    QCoreApplication::processEvents();
    if (!card_.isVisible()) return {};
    QStringList words;
    for (const QLabel* label : card_.findChildren<QLabel*>())
      if (label->isVisible() && !label->text().isEmpty()) words << label->text();
    const QAbstractButton& install = button("updateNotice.install");
    return words << (install.isEnabled() ? '[' + install.text() + ']' : install.text());
  }
  /// For a look: VELMORA_SHOTS names a folder.
  void shoot(const char* name) {
    words();
    const QString folder = qEnvironmentVariable("VELMORA_SHOTS");
    if (!folder.isEmpty()) studio_.grab().save(folder + "/update-" + name + ".png");
  }

  Studio studio_;
  UpdateNotice card_{*updater_, &studio_};
};

TEST_F(UpdateNoticeTest, OffersWhatTheServiceFound) {
  const QString title = "Velmora 0.2.0 is available";
  EXPECT_EQ(words(), QStringList());
  updater_->didFindValidUpdate(offer("0.2.0"));
  EXPECT_EQ(words(),
            QStringList({title, "Velmora can download and install this update for you.", "[Get Update]"}));
  EXPECT_EQ(button("updateNotice.later").accessibleName(), "Later");
  const QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&card_);
  EXPECT_EQ(spoken->role(), QAccessible::AlertMessage);
  EXPECT_EQ(spoken->text(QAccessible::Name), title);
  EXPECT_EQ(card_.geometry().bottomRight(), QPoint(520 - 12 - 1, 320 - 12 - 1));
  EXPECT_LE(card_.width(), 360);
  shoot("found");
  click("updateNotice.install");
  EXPECT_EQ(controller_->checks, 1);
  click("updateNotice.later");
  EXPECT_EQ(words(), QStringList());
  updater_->standardUserDriverWillHandleShowingUpdate(false, offer("0.2.0"), {});
  EXPECT_EQ(words().front(), title) << "the next scheduled check brings it back";
  updater_->standardUserDriverWillFinishUpdateSession();
  EXPECT_EQ(words(), QStringList());
  canInstall_ = false;
  updater_->didFindValidUpdate(offer("0.2.0"));
  EXPECT_EQ(words()[1], "You can get this update from its download page.");
  shoot("page");
}

TEST_F(UpdateNoticeTest, RestartsOnlyWhenNothingIsAtRisk) {
  updater_->willInstallUpdateOnQuit(offer("0.2.0"), [this] { ++installations_; });
  const QString ready = "Ready when you are. Your projects stay on this computer.";
  const QString obstacle = "Finish your recording, export or save before restarting.";
  const QString title = "Velmora 0.2.0 is available";
  EXPECT_EQ(words(), QStringList({title, ready, "[Update & Restart]"}));
  shoot("ready");
  const int height = card_.height();
  record();
  loseTake();
  EXPECT_EQ(words(), QStringList({title, ready, obstacle, "Update & Restart"}));
  EXPECT_GT(card_.height(), height);
  EXPECT_EQ(card_.geometry().bottom(), 320 - 12 - 1) << "it grows upwards";
  shoot("blocked");
  click("updateNotice.install");
  EXPECT_EQ(installations_, 0);
  model().discardPendingTake();
  ASSERT_TRUE(spinUntil([&] { return updater_->canRestart(); }));
  EXPECT_EQ(words().back(), "[Update & Restart]");
  card_.setFocus();
  button("updateNotice.install").setFocus(Qt::TabFocusReason);
  QTest::keyClick(&button("updateNotice.install"), Qt::Key_Return);
  EXPECT_EQ(installations_, 1);
  updater_->standardUserDriverWillFinishUpdateSession();
  EXPECT_EQ(words().front(), title) << "an offer with a block stays";
  updater_->start(*testing::ModelBench().model);
  EXPECT_EQ(words().back(), "Update & Restart") << "of a model that is gone nothing is known";
}

TEST_F(UpdateNoticeTest, TheWindowTellsAndAsks) {
  UpdateWindow window([this] { return &studio_; });
  std::vector<std::string> heard;
  const auto sheet = [this] { return studio_.findChild<UpdateSheet*>(); };
  const auto shot = [&](const char* name) {
    const QString folder = qEnvironmentVariable("VELMORA_SHOTS");
    QCoreApplication::processEvents();
    if (!folder.isEmpty()) sheet()->grab().save(folder + "/update-" + name + ".png");
  };
  const auto press = [&](const char* name) {
    QTest::mouseClick(sheet()->findChild<QAbstractButton*>(name), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  };
  platform::UpdateMessage working{
      "Downloading Velmora 0.2.0…", "12 MB of 84 MB", 0.15, {}, {}, "Cancel", [&] {
        heard.emplace_back("cancelled");
      }};
  window.show({.title = "Velmora 0.2.0 is available",
               .text = "You have version 0.1.0. The download has 84 MB.",
               .action = "Download",
               .onAction =
                   [&] {
                     heard.emplace_back("action");
                     window.show(working);
                   },
               .close = "Later",
               .onClose = [&] { heard.emplace_back("later"); }});
  shot("window-offer");
  EXPECT_FALSE(sheet()->isModal()) << "the studio goes on";
  press("update.action");
  window.showProgress("42 MB of 84 MB", 0.5);
  EXPECT_EQ(sheet()->windowTitle(), working.title);
  EXPECT_EQ(sheet()->accessibleDescription(), "42 MB of 84 MB");
  EXPECT_EQ(sheet()->findChild<QProgressBar*>()->value(), 500);
  shot("window-download");
  press("update.close");
  EXPECT_FALSE(sheet());
  window.showProgress("43 MB of 84 MB", 0.6);
  window.show({.title = "Velmora is up to date.", .text = "<b>1</b>", .onClose = [&] {
                 heard.emplace_back("never");
               }});
  EXPECT_EQ(sheet()->findChild<QLabel*>("update.text")->textFormat(), Qt::PlainText);
  shot("window-done");
  window.hide();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(sheet());
  window.show({.title = "", .onClose = [&] { heard.emplace_back("escaped"); }});
  QTest::keyClick(sheet(), Qt::Key_Escape);
  EXPECT_EQ(heard, (std::vector<std::string>{"action", "cancelled", "escaped"}));
}

}  // namespace
}  // namespace velmora
