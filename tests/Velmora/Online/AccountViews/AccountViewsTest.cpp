#include <QAccessible>
#include <QSettings>
#include <QTest>
#include <gtest/gtest.h>

#include "Velmora/Online/AccountViews/AccountManagementView.h"
#include "tests/support/ModelBench.h"
#include "tests/support/service/ServiceDouble.h"

namespace velmora {
namespace {

using testing::ServiceDouble;
using testing::spinUntil;

const std::string ada = R"({"id": "6F9619FF-8B86-4011-B42D-00CF4FC964FF", "username": "ada"})";
const std::string nameless = R"({"id": "6F9619FF-8B86-4011-B42D-00CF4FC964FF", "email": "ada@studio.test"})";

struct MemoryCredentials final : platform::CredentialStore {
  QCoro::Task<> unlock() override { co_return; }
  std::optional<QByteArray> load() override { return item; }
  bool update(const QByteArray& value) override { return item ? (item = value, true) : false; }
  void add(const QByteArray& value) override { item = value; }
  bool remove() override { return std::exchange(item, std::nullopt).has_value(); }
  std::optional<QByteArray> item;
};

/// The account sheet over a window, a real store and a service on the loopback.
class AccountViewsTest : public ::testing::Test {
 protected:
  AccountViewsTest() { QSettings("Orrin", "Velmora").clear(); }
  ~AccountViewsTest() override { delete sheet_; }

  /// A start with a stored session of this customer; the service has no more to say of it.
  void startAs(const std::string& customer) {
    service_.answer("GET /api/v1/me", 500, "{}", ServiceDouble::always);
    credentials_.item = QByteArray::fromStdString(sessionOf(customer, "token"));
    auto starting = account_.start();
    ASSERT_TRUE(spinUntil([&] { return starting.isReady(); }));
  }
  static std::string sessionOf(const std::string& customer, const std::string& token) {
    return R"({"expiresAt": "later", "sessionToken": ")" + token + R"(", "customer": )" + customer + "}";
  }
  void open() {
    account_.showsAccount.set(true);
    sheet_ = new AccountManagementView(*bench_.model, account_, telemetry_, service_.address(), &window_);
    sheet_->open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(sheet_));
  }

  template <class Widget = QWidget>
  Widget* find(const char* name) {
    return sheet_ ? sheet_->findChild<Widget*>(name) : nullptr;
  }
  bool isShown(const char* name) { return find(name) && find(name)->isVisible(); }
  bool isEnabled(const char* name) { return isShown(name) && find(name)->isEnabled(); }
  bool awaitFocus(const char* name) {
    return spinUntil([&] { return find(name) && QApplication::focusWidget() == find(name); });
  }
  QString textOf(const char* field) { return find<QLineEdit>(field)->text(); }
  void click(const char* name) {
    ASSERT_TRUE(spinUntil([&] { return isEnabled(name); })) << name;
    QTest::mouseClick(find(name), Qt::LeftButton);
    QCoreApplication::processEvents();
  }
  void type(const char* field, const QString& text, Qt::Key last = Qt::Key_unknown) {
    ASSERT_TRUE(isEnabled(field)) << field;
    find(field)->setFocus();
    QTest::keyClick(find(field), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(find(field), Qt::Key_Delete);
    QTest::keyClicks(find(field), text);
    if (last != Qt::Key_unknown) QTest::keyClick(find(field), last);
    QCoreApplication::processEvents();
  }
  /// What stands over the page of the sheet, as it is read out.
  static bool tells(const QWidget* sheet, const std::string& text) {
    if (!sheet) return false;
    const auto* const line = sheet->findChild<QWidget*>("message", Qt::FindDirectChildrenOnly);
    return (line->isVisible() ? line->accessibleName() : "").toStdString() == text;
  }
  static bool awaitMessage(QWidget* shown, const std::string& text) {
    const QPointer<QWidget> sheet(shown);
    return spinUntil([&] { return tells(sheet, text); });
  }
  bool awaitRest() {
    return spinUntil([&] { return !find("confirmation") && !account_.isBusy(); });
  }

  /// Names, roles and actions for all that the keyboard reaches, line by line downwards; and no masked text.
  void expectSpoken(QWidget& window, int count) {
    int bottom = 0;
    for (QWidget* each = window.nextInFocusChain(); each != &window; each = each->nextInFocusChain()) {
      if (!each->isVisible() || !each->isEnabled() || !(each->focusPolicy() & Qt::TabFocus)) continue;
      --count;
      QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(each);
      const std::string name = each->objectName().toStdString();
      EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty()) << name;
      EXPECT_NE(spoken->role(), QAccessible::Client) << name;
      EXPECT_FALSE(spoken->actionInterface()->actionNames().isEmpty()) << name;
      for (const auto text : {QAccessible::Name, QAccessible::Description, QAccessible::Value})
        EXPECT_FALSE(spoken->text(text).contains("secret")) << name;
      const int here = each->mapTo(&window, QPoint(0, each->height())).y();
      EXPECT_GE(here, std::exchange(bottom, here)) << name;
    }
    EXPECT_EQ(count, 0);
  }

  testing::ModelBench bench_;
  ServiceDouble service_;
  platform::HTTPClient client_;
  platform::Preferences preferences_;
  MemoryCredentials credentials_;
  Telemetry telemetry_{preferences_, [](QByteArray, std::string) -> QCoro::Task<> { co_return; }};
  AccountStore account_{AccountAPI(client_, service_.address()), credentials_, preferences_, telemetry_};
  QWidget window_;
  QPointer<AccountManagementView> sheet_;
};

TEST_F(AccountViewsTest, AsksForANameAndAPasswordBeforeItSubmits) {
  open();
  EXPECT_TRUE(awaitFocus("account-username"));
  const struct {
    const char *username, *password;
    bool isEnough;
  } rows[] = {{"", "", false}, {"a", "", false}, {"", "p", false}, {" \t", "p", false}, {" a", " ", true}};
  for (const auto& [username, password, isEnough] : rows) {
    type("account-username", username);
    type("account-password", password, isEnough ? Qt::Key_unknown : Qt::Key_Return);
    EXPECT_EQ(isEnabled("account-password-submit"), isEnough) << '"' << username << '"';
  }
  EXPECT_EQ(service_.requests().size(), 0U);
}

TEST_F(AccountViewsTest, SignsInByReturnWithTheNameAsTyped) {
  service_.addAccount({.username = " ada ", .password = "secret one", .displayName = "<b>Ada</b>"});
  const std::string refusal = "<i>Not</i> now.";
  service_.answer("auth/password", 503, R"({"error": ")" + refusal + "\"}", 2);
  service_.hold("auth/password", 3);
  open();
  type("account-username", " ada ", Qt::Key_Return);
  EXPECT_TRUE(awaitFocus("account-password"));
  for (std::size_t i = 1; i <= 3; ++i) {
    type("account-password", "secret one");
    expectSpoken(*sheet_, 8);
    QTest::keyClick(find("account-password"), Qt::Key_Return);
    ASSERT_TRUE(service_.await("auth/password", i));
    EXPECT_FALSE(isEnabled("account-password"));
    EXPECT_EQ(QApplication::focusWidget(), nullptr);
    service_.release();
    if (i == 3) break;
    EXPECT_TRUE(awaitMessage(sheet_, refusal) && awaitFocus("account-password"));
    EXPECT_EQ(textOf("account-password"), "secret one");
  }
  EXPECT_TRUE(awaitFocus("account.username") && awaitRest());
  EXPECT_EQ(service_.requests("auth").back().body, R"({"password":"secret one","username":" ada "})");
  EXPECT_EQ(textOf("account-password"), "");
  EXPECT_EQ(textOf("account.username"), " ada ");
  EXPECT_FALSE(isShown("account-sign-in") || isShown("account.email"));
  EXPECT_EQ(find("account.customer")->accessibleName(), "<b>Ada</b>");
}

TEST_F(AccountViewsTest, CreatesAnAccountOnceBothPasswordsAreTheSame) {
  open();
  click("account-password-mode");
  type("account-username", "ada");
  type("account-password", "secret one", Qt::Key_Return);
  EXPECT_TRUE(awaitFocus("account-password-confirmation"));
  type("account-password-confirmation", "secret two");
  find("account-username")->setFocus();
  click("account-password-submit");
  EXPECT_TRUE(awaitMessage(sheet_, "The passwords do not match. Enter them again."));
  EXPECT_TRUE(awaitFocus("account-password-confirmation"));
  EXPECT_EQ(service_.requests().size(), 0U);
  expectSpoken(*sheet_, 9);
  type("account-password-confirmation", "secret one", Qt::Key_Return);
  EXPECT_TRUE(awaitFocus("account.username") && awaitRest());
  EXPECT_TRUE(service_.hasAccount("ada"));
  EXPECT_EQ(textOf("account-password") + textOf("account-password-confirmation"), "");
}

TEST_F(AccountViewsTest, ShowsWhatTheAccountHasAndAsksForItsConsent) {
  open();
  EXPECT_FALSE(isEnabled("account.telemetry"));
  startAs(nameless);
  for (const bool isOn : {true, false}) {
    click("account.telemetry");
    EXPECT_EQ(telemetry_.isEnabled(), isOn);
    EXPECT_EQ(find<QAbstractButton>("account.telemetry")->isChecked(), isOn);
  }
  EXPECT_EQ(find("account.customer")->accessibleName(), "Your Velmora account");
  EXPECT_FALSE(isShown("account.changePassword") || isShown("account.username") ||
               isShown("account-sign-in"));
  expectSpoken(*sheet_, 8);
  QTest::keyClick(find("account.email"), Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(find<QLineEdit>("account.email")->selectedText(), "ada@studio.test");
}

TEST_F(AccountViewsTest, ChangesThePassword) {
  startAs(ada);
  service_.answer("account/password", 403, R"({"error": "That isn't your password."})");
  service_.answer("account/password", 200, sessionOf(ada, "new"));
  open();
  click("account.changePassword");
  auto* const sheet = find("changePassword");
  ASSERT_TRUE(QTest::qWaitForWindowActive(sheet));
  EXPECT_TRUE(awaitFocus("changePassword.current"));
  type("changePassword.current", "secret one", Qt::Key_Return);
  EXPECT_FALSE(isEnabled("changePassword.save"));
  type("changePassword.new", "secret two", Qt::Key_Return);
  EXPECT_TRUE(isEnabled("changePassword.save"));
  expectSpoken(*sheet, 5);
  type("changePassword.confirmation", "secret", Qt::Key_Return);
  EXPECT_TRUE(awaitMessage(sheet, "The new passwords do not match. Enter them again."));
  EXPECT_EQ(service_.requests("account/password").size(), 0U);
  type("changePassword.confirmation", "secret two", Qt::Key_Return);
  EXPECT_TRUE(awaitMessage(sheet, "That isn't your password.") && awaitFocus("changePassword.confirmation"));
  click("changePassword.save");
  EXPECT_TRUE(spinUntil([&] { return !find("changePassword"); }));
  EXPECT_EQ(account_.session()->sessionToken, "new");
  EXPECT_EQ(service_.requests("account/password").back().body,
            R"({"currentPassword":"secret one","newPassword":"secret two"})");
  EXPECT_TRUE(awaitMessage(sheet_, "Password changed. Other devices have been signed out."));
}

TEST_F(AccountViewsTest, DeletesTheAccountOnlyWhenThatIsConfirmed) {
  startAs(ada);
  service_.answer("DELETE", 500, R"({"error": "Not now."})");
  service_.answer("DELETE", 200, R"({"ok": true})");
  open();
  for (const char* answer : {"confirmation.cancel", "confirmation.accept", "confirmation.accept"}) {
    click("account.delete");
    click(answer);
    EXPECT_TRUE(awaitRest());
    const char* const told = service_.requests("DELETE").empty() ? "" : "Not now.";
    EXPECT_TRUE(spinUntil([&] { return !sheet_ || tells(sheet_, told); }));
  }
  EXPECT_EQ(service_.requests("DELETE /api/v1/account").size(), 2U);
  EXPECT_TRUE(spinUntil([&] { return !sheet_; }));
  EXPECT_NE(account_.message(), std::nullopt);  // for the next time that the sheet opens
}

TEST_F(AccountViewsTest, GoesWithTheFieldThatShowsIt) {
  startAs(ada);
  const std::function<void()> ways[] = {
      [&] { click("account.done"); }, [&] { QTest::keyClick(sheet_, Qt::Key_Escape); },
      [&] { click("account.changePassword"), account_.showsAccount.set(false); },
      [&] { click("account.logOut"); }};
  for (const auto& close : ways) {
    open();
    EXPECT_TRUE(bench_.model->isEditingText());
    close();
    EXPECT_TRUE(spinUntil([&] { return !sheet_; }));
    EXPECT_FALSE(account_.showsAccount() || bench_.model->isEditingText());
  }
  EXPECT_FALSE(account_.session());
}

}  // namespace
}  // namespace velmora
