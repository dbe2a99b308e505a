#include <QAccessible>
#include <QComboBox>
#include <QDesktopServices>
#include <QLineEdit>
#include <QTextBrowser>
#include <fstream>

#include "tests/Velmora/Online/CommunityViews/CommunityBench.h"

namespace velmora {
namespace {

using testing::spinUntil;

class CommunityViewsTest : public testing::CommunityBench {
 protected:
  /// Names, roles and actions of all that the keyboard can reach.
  void expectSpoken(QWidget& window) {
    for (QWidget* widget : window.findChildren<QWidget*>()) {
      if (!(widget->focusPolicy() & Qt::TabFocus) || !widget->isVisible() || widget->window() != &window)
        continue;
      QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(widget);
      const std::string name = spoken->text(QAccessible::Name).toStdString();
      EXPECT_FALSE(name.empty()) << widget->objectName().toStdString();
      EXPECT_NE(spoken->role(), QAccessible::Client) << name;
      ASSERT_TRUE(spoken->actionInterface()) << name;
      EXPECT_FALSE(widget->isEnabled() && spoken->actionInterface()->actionNames().isEmpty()) << name;
    }
  }
  std::string spokenRow(std::size_t row) {
    return QAccessible::queryAccessibleInterface(rows().at(row))->text(QAccessible::Name).toStdString();
  }
  std::string focusName() {
    QWidget* const focus = QApplication::focusWidget();
    if (!focus) return "";
    return QAccessible::queryAccessibleInterface(focus)->text(QAccessible::Name).toStdString();
  }
};

TEST_F(CommunityViewsTest, ReadsOutTheRowsOfAFeed) {
  service_.addProfile(me_, {.handle = "demo", .isDemo = true});
  service_.addPost(
      me_, {.title = "Loop", .caption = "Four bars.", .wav = testing::toneWAV(std::chrono::seconds(2))});
  for (const int milliseconds : {400, 1999, 20000}) post("Beat", milliseconds);
  open();
  EXPECT_EQ(spokenRow(0), "Beat, @ada, 20 sec, 0 upvotes");
  EXPECT_EQ(spokenRow(1), "Beat, @ada, 1 sec, 0 upvotes");
  EXPECT_EQ(spokenRow(2), "Beat, @ada, 1 sec, 0 upvotes");
  EXPECT_EQ(rows()[3]->spokenDetails(), "Four bars.. 0 followers. Velmora demo · generated example");
  EXPECT_FALSE(isShown("community.previous") || isShown("community.more"));
  for (int section = 0; section < 3; ++section) {
    choose("community.section", section);
    expectSpoken(*view_);
  }
}

TEST_F(CommunityViewsTest, TurnsPagesAndOrders) {
  service_.setPageSize(2);
  for (const char* title : {"one", "two", "three"}) post(title);
  open();
  find("community.more")->setFocus(Qt::TabFocusReason);
  press(Qt::Key_Return);
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(rows().size(), 1U);
  EXPECT_EQ(focusName(), spokenRow(0));
  EXPECT_TRUE(isShown("community.previous") && !isShown("community.more"));
  press(Qt::Key_F5);
  ASSERT_TRUE(awaitRest());
  EXPECT_TRUE(isShown("community.more") && !isShown("community.previous"));
  choose("community.order", 1);
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(service_.requests("feed").back().query, "order=popular&page=1");
  service_.hold("feed");
  choose("community.order", 2);
  ASSERT_TRUE(service_.await("order=following"));
  EXPECT_TRUE(isShown("community.loading"));
  service_.release();
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(service_.requests("feed").back().query, "order=following&page=1");
  EXPECT_TRUE(rows().empty());
}

TEST_F(CommunityViewsTest, ShowsStrangersTheFeedOnly) {
  post("Beat");
  open(Account::none);
  EXPECT_EQ(find("community.order")->findChildren<QAbstractButton*>().size(), 2);
  EXPECT_FALSE(button(0, "community.post.vote").isEnabled());
  EXPECT_EQ(button(0, "community.post.vote").accessibleDescription(),
            "Sign in to upvote or follow creators.");
  click(&button(0, "community.post.menu"));
  EXPECT_EQ(openMenu(), "(Follow @ada), Report preview or creator, (Block @ada)");
  delete QApplication::activePopupWidget();
  for (const int section : {1, 2}) {
    choose("community.section", section);
    const auto labels = view_->findChildren<QLabel*>();
    EXPECT_EQ(std::ranges::count_if(labels,
                                    [](const QLabel* label) {
                                      return label->isVisible() && label->text() == "Sign in to join in";
                                    }),
              1);
  }
}

TEST_F(CommunityViewsTest, GoesThroughTheRowsByKeyboardAndKeepsTheFocus) {
  for (const char* title : {"three", "two", "one"}) post(title);
  open();
  find("community.reload")->setFocus(Qt::TabFocusReason);
  for (const auto& [key, name] :
       std::initializer_list<std::pair<Qt::Key, const char*>>{{Qt::Key_Tab, "one, @ada, 20 sec, 0 upvotes"},
                                                              {Qt::Key_Down, "two, @ada, 20 sec, 0 upvotes"},
                                                              {Qt::Key_End, "three, @ada, 20 sec, 0 upvotes"},
                                                              {Qt::Key_Up, "two, @ada, 20 sec, 0 upvotes"},
                                                              {Qt::Key_Tab, "Play preview"},
                                                              {Qt::Key_Tab, "Upvote"}}) {
    press(key);
    EXPECT_EQ(focusName(), name);
  }
  service_.hold("/vote");
  press(Qt::Key_Space);
  ASSERT_TRUE(service_.await("/vote"));
  EXPECT_FALSE(button(0, "community.post.play").isEnabled() || isEnabled("community.reload"));
  EXPECT_EQ(button(1, "community.post.vote").text(), "0");
  post("new");
  service_.release();
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(rows().size(), 4U);
  EXPECT_EQ(QApplication::focusWidget(), &button(2, "community.post.vote"));
  EXPECT_EQ(focusName(), "Take back upvote");
  EXPECT_EQ(button(2, "community.post.vote").text(), "1");
  press(Qt::Key_Tab);
  press(Qt::Key_Return);
  EXPECT_EQ(openMenu(), "Follow @ada, Report preview or creator, Block @ada");
  press(Qt::Key_Down);
  press(Qt::Key_Return);
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(service_.requests("POST .*/follow$").size(), 1U);
  EXPECT_EQ(rows()[0]->spokenDetails(), "1 followers");
}

TEST_F(CommunityViewsTest, PlaysOnePreviewAtATime) {
  post("one");
  post("two");
  open();
  for (const std::size_t row : {0U, 1U}) {
    click(&button(row, "community.post.play"));
    ASSERT_TRUE(awaitRest());
    EXPECT_EQ(button(row, "community.post.play").accessibleName(), "Stop preview");
    EXPECT_EQ(button(1 - row, "community.post.play").accessibleName(), "Play preview");
  }
  click(&button(1, "community.post.play"));
  EXPECT_EQ(button(1, "community.post.play").accessibleName(), "Play preview");
}

TEST_F(CommunityViewsTest, ReportsAPostOrItsCreatorAndClosesAtOnce) {
  service_.addProfile(ada_, {.handle = "<b>&ada"});
  const std::string id = post("Beat");
  open();
  for (const bool isAboutCreator : {false, true}) {
    click(&button(0, "community.post.menu"));
    EXPECT_EQ(openMenu(), "Follow @<b>&&ada, Report preview or creator, Block @<b>&&ada");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    QPointer<QWidget> report = find("report");
    ASSERT_TRUE(report && QTest::qWaitForWindowActive(report));
    EXPECT_EQ(report->windowTitle(), "Report @<b>&ada");
    EXPECT_EQ(report->findChild<QLabel*>()->textFormat(), Qt::PlainText);
    expectSpoken(*report);
    type("report.details", QString(501, 'x'));
    EXPECT_FALSE(isEnabled("report.send"));
    QTest::keyClick(find("report.details"), Qt::Key_Backspace);
    QTest::keyClick(find("report.reason"), Qt::Key_Down);
    if (isAboutCreator) click("report.creator");
    service_.hold("reports");
    click("report.send");
    EXPECT_TRUE(spinUntil([&] { return !report; }));
    EXPECT_TRUE(service_.await("reports", isAboutCreator ? 2 : 1));
    service_.release();
    view_->activateWindow();
    ASSERT_TRUE(awaitRest() && QTest::qWaitForWindowActive(view_));
    EXPECT_EQ(message(), "Report received. Thank you for letting us know.");
    EXPECT_EQ(sentTo("reports"), R"({"creatorId":")" + ada_ + R"(","details":")" + std::string(500, 'x') +
                                     (isAboutCreator ? "" : R"(","postId":")" + id) +
                                     R"(","reason":"copyright"})");
  }
  click("message.dismiss");
  EXPECT_EQ(message(), "");
}

TEST_F(CommunityViewsTest, SendsAProfileWithinItsLimits) {
  open();
  choose("community.section", 1);
  click("profile.accepts");
  const struct {
    int handle, name, bio;
    bool isWithin;
  } rows[] = {{0, 1, 0, false},  {1, 0, 0, false},   {25, 1, 0, false},
              {1, 41, 0, false}, {1, 1, 281, false}, {24, 40, 280, true}};
  for (const auto& [handle, name, bio, isWithin] : rows) {
    type("profile.handle", QString(handle, 'h'));
    type("profile.name", QString(name, 'n'));
    type("profile.bio", QString(bio, 'b'));
    EXPECT_EQ(isEnabled("profile.send"), isWithin) << handle << ' ' << name << ' ' << bio;
  }
  click("profile.accepts");
  EXPECT_FALSE(isEnabled("profile.send"));
  click("profile.accepts");
  EXPECT_FALSE(isShown("profile.state"));
  click("profile.send");
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(message(), "Profile sent for review. It will appear after approval.");
  EXPECT_EQ(find<QLabel>("profile.state")->text(), "Profile: pending");
}

TEST_F(CommunityViewsTest, ShowsWhatTheCreatorHas) {
  service_.addProfile(me_, {.handle = "me", .displayName = "Myself", .bio = "Tape."});
  for (const char* state : {"uploading", "approved"})
    service_.addPost(me_, {.title = state, .wav = testing::toneWAV(std::chrono::seconds(1)), .state = state});
  open();
  choose("community.section", 1);
  EXPECT_EQ(find<QLineEdit>("profile.name")->text(), "Myself");
  const auto shown = [&](const char* name) {
    const auto buttons = view_->findChildren<QAbstractButton*>(name);
    return std::ranges::count_if(buttons, [](const QAbstractButton* each) { return each->isVisible(); });
  };
  EXPECT_EQ(shown("profile.play"), 1);
  EXPECT_EQ(shown("profile.delete"), 2);
  type("profile.bio", "Tape and dust.");
  click("profile.delete");
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(shown("profile.delete"), 1);
  EXPECT_EQ(find<QPlainTextEdit>("profile.bio")->toPlainText(), "Tape and dust.");
  store_->block(*UUID::parse(ada_));
  ASSERT_TRUE(awaitRest());
  click("profile.unblock");
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(shown("profile.unblock"), 0);
}

TEST_F(CommunityViewsTest, PublishesAPreviewThatWasHeard) {
  service_.addProfile(me_, {.handle = "me"});
  bench_.open();
  open();
  choose("community.section", 2);
  QPointer<AppModel> model = bench_.model.get();
  auto creating = model->createProject();
  QCoreApplication::processEvents();
  EXPECT_FALSE(isEnabled("share.render"));
  ASSERT_TRUE(spinUntil([&] { return creating.isReady() && isEnabled("share.render"); }));
  EXPECT_FALSE(isShown("share.listen"));
  click("share.render");
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(message(), "Preview ready. Listen before you publish it.");
  const auto file = *store_->localPreview();
  click("share.listen");
  EXPECT_EQ(store_->playingID(), std::nullopt);
  click("share.stop");
  for (const auto& [count, isWithin] : {std::pair{0, false}, {80, true}, {81, false}}) {
    type("share.title", QString(count, 't'));
    if (!find<QAbstractButton>("share.owns")->isChecked()) click("share.owns");
    EXPECT_EQ(isEnabled("share.publish"), isWithin) << count;
  }
  type("share.title", "Tin");
  type("share.caption", QString(501, 'c'));
  EXPECT_FALSE(isEnabled("share.publish"));
  type("share.caption", "Rain.");
  service_.answer("PUT", 500, R"({"error": "Not now."})");
  click("share.publish");
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(message(), "Not now.");
  click("share.publish");
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(sentTo("POST .*/posts$"), R"({"caption":"Rain.","ownsRights":true,"title":"Tin"})");
  EXPECT_FALSE(isShown("share.listen") || isEnabled("share.publish") || std::filesystem::exists(file));
}

TEST_F(CommunityViewsTest, RestsTheTransportAndThePlainKeysWhileItIsOpen) {
  bench_.open();
  bench_.model->play();
  open();
  EXPECT_FALSE(bench_.model->isPlaying());
  EXPECT_TRUE(bench_.model->isEditingText());
  choose("community.section", 2);
  click("share.render");
  ASSERT_TRUE(awaitRest());
  const auto file = *store_->localPreview();
  type("share.caption", "Rain.");
  press(Qt::Key_Escape);
  EXPECT_TRUE(spinUntil([&] { return !view_; }));
  EXPECT_FALSE(bench_.model->isEditingText() || std::filesystem::exists(file));
  open();
  click("community.done");
  EXPECT_TRUE(spinUntil([&] { return !view_; }));
}

TEST_F(CommunityViewsTest, HoldsItsShapeAgainstHostileTexts) {
  const std::string texts[] = {std::string(100'000, 'W'), "<h1>Loud</h1><img src='file:///etc/passwd'>",
                               "\u202Eright\u202C\u0007 to\n\r\tleft\u2028",
                               "Z\u0301\u0301\u0301\u0301\u0301\u0301o"};
  for (const std::string& text : texts)
    service_.addPost(ada_,
                     {.title = text, .caption = text, .wav = testing::toneWAV(std::chrono::seconds(1))});
  service_.answer("/vote", 400, R"({"error": ")" + std::string(100'000, 'W') + "\"}");
  open();
  view_->resize(540, 480);
  click(&button(0, "community.post.vote"));
  ASSERT_TRUE(awaitRest());
  EXPECT_EQ(view_->size(), QSize(540, 480));
  EXPECT_LT(find("community.message")->height(), 260);
  EXPECT_EQ(spokenRow(0), "Z\u0301\u0301\u0301\u0301o, @ada, 1 sec, 0 upvotes");
  EXPECT_EQ(spokenRow(1), "right to left, @ada, 1 sec, 0 upvotes");
  EXPECT_EQ(spokenRow(2), "<h1>Loud</h1><img src='file:///etc/passwd'>, @ada, 1 sec, 0 upvotes");
  EXPECT_LT(spokenRow(3).size(), 200U);
  for (CommunityPostRow* row : rows()) EXPECT_LT(row->height(), 360);
}

TEST_F(CommunityViewsTest, LeadsToTheRules) {
  QTextBrowser browser;
  QDesktopServices::setUrlHandler("https", &browser, "setSource");
  open();
  for (const auto& [section, name] : {std::pair{1, "profile.rules"}, {2, "share.rules"}}) {
    browser.setSource({});
    choose("community.section", section);
    click(name);
    EXPECT_EQ(browser.source().host(), "studio.test");
  }
  QDesktopServices::unsetUrlHandler("https");
}

}  // namespace
}  // namespace velmora
