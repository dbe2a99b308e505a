#pragma once

#include <QAbstractButton>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>
#include <gtest/gtest.h>

#include "Velmora/Online/CommunityViews/CommunityView.h"
#include "tests/support/ModelBench.h"
#include "tests/support/service/ServiceDouble.h"

namespace velmora::testing {

/// The community window over a real model and store, and a service on the loopback with two creators.
class CommunityBench : public ::testing::Test {
 protected:
  CommunityBench() {
    me_ = service_.addAccount({.username = "me"});
    ada_ = service_.addAccount({.username = "ada"});
    service_.addProfile(ada_, {.handle = "ada"});
    window_.resize(1280, 800);
    window_.show();
  }
  ~CommunityBench() override { delete view_; }

  std::string post(const std::string& title, int milliseconds = 20000, const std::string& caption = "") {
    return service_.addPost(
        ada_, {.title = title, .caption = caption, .wav = toneWAV(std::chrono::milliseconds(milliseconds))});
  }

  enum class Account { none, mine };
  void open(Account account = Account::mine) {
    std::optional<std::string> token;
    if (account == Account::mine) token = service_.openSession(me_);
    auto made = std::make_unique<CommunityStore>(CommunityAPI(client_, service_.address()), token,
                                                 [] { return std::make_unique<HandDrivenOutput>(); });
    store_ = made.get();
    view_ = new CommunityView(*bench_.model, std::move(made), QUrl("https://studio.test"), &window_);
    view_->open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(view_));
    ASSERT_TRUE(awaitRest());
  }
  /// Until nothing is on its way any more and all of it is shown.
  bool awaitRest() {
    const bool isAtRest = spinUntil([&] { return !store_->isBusy() && !store_->isLoading(); });
    QCoreApplication::processEvents();
    return isAtRest;
  }

  template <class Widget = QWidget>
  Widget* find(const char* name) {
    return view_ ? view_->findChild<Widget*>(name) : nullptr;
  }
  bool isShown(const char* name) { return find(name) && find(name)->isVisible(); }
  bool isEnabled(const char* name) { return isShown(name) && find(name)->isEnabled(); }
  void click(QWidget* widget) {
    ASSERT_TRUE(widget && widget->isVisible() && widget->isEnabled());
    QTest::mouseClick(widget, Qt::LeftButton);
    QCoreApplication::processEvents();
  }
  void click(const char* name) { click(find(name)); }
  void choose(const char* picker, int index) {
    click(find(picker)->findChildren<QAbstractButton*>().at(index));
  }
  /// Types into a line or an area; nothing clears it.
  void type(const char* name, const QString& text) {
    QWidget* const field = find(name);
    ASSERT_TRUE(field && field->isVisible());
    field->setFocus();
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
    QCoreApplication::processEvents();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::activeWindow()->windowHandle(), key, modifiers);
    QCoreApplication::processEvents();
  }

  /// The shown rows from the top.
  std::vector<CommunityPostRow*> rows() {
    std::vector<CommunityPostRow*> found;
    for (QWidget* const widget : view_->findChildren<QWidget*>()) {
      if (auto* const row = dynamic_cast<CommunityPostRow*>(widget); row && row->isVisible())
        found.push_back(row);
    }
    std::ranges::sort(found, {}, [](const CommunityPostRow* row) { return row->y(); });
    return found;
  }
  QAbstractButton& button(std::size_t row, const char* name) {
    return *rows().at(row)->findChild<QAbstractButton*>(name);
  }
  /// The entries of the menu that is open, those that rest in parentheses.
  std::string openMenu() {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    std::string entries;
    for (QAction* const entry : menu ? menu->actions() : QList<QAction*>()) {
      if (entry->isSeparator()) continue;
      const std::string text = entry->text().toStdString();
      entries += (entries.empty() ? "" : ", ") + (entry->isEnabled() ? text : "(" + text + ")");
    }
    return entries;
  }
  std::string sentTo(const std::string& pattern) {
    const auto requests = service_.requests(pattern);
    return requests.empty() ? "" : requests.back().body;
  }
  std::string message() {
    QWidget* const line = find("community.message");
    return line->isVisible() ? line->accessibleName().toStdString() : "";
  }

  ModelBench bench_;
  ServiceDouble service_;
  platform::HTTPClient client_;
  std::string me_, ada_;
  QWidget window_;
  QPointer<CommunityView> view_;
  CommunityStore* store_ = nullptr;  // the view's
};

}  // namespace velmora::testing
