#include <QCoroFuture>
#include <QPromise>
#include <gmock/gmock.h>

#include "Velmora/Online/Account/AccountCoding.h"
#include "Velmora/Online/Account/AccountStore.h"
#include "Velmora/Online/Account/Telemetry.h"
#include "tests/Velmora/Online/Account/OnlineTest.h"

namespace velmora {
namespace {

using platform::resultOf;
using ::testing::HasSubstr;

constexpr char failed[] = "The drawer is stuck.";
using enum AccountAPI::Account;

/// Keeps the item in memory, notes what it is asked, and fails or waits for its user where it is told to.
struct Credentials final : platform::CredentialStore {
  QCoro::Task<> unlock() override {
    log += "unlock ";
    if (user) {
      const QFuture<void> answer = user->future();
      co_await answer;
    }
    isLocked = staysLocked;
  }
  std::optional<QByteArray> load() override { return note("load"), item; }
  bool update(const QByteArray& value) override {
    return note("update"), item ? (item = value, true) : false;
  }
  void add(const QByteArray& value) override { note("add"), item = value; }
  bool remove() override { return note("remove"), std::exchange(item, std::nullopt).has_value(); }

  void note(const char* call) {
    log += call + std::string(" ");
    if (isLocked) throw platform::CredentialLocked("locked");
    if (isFailing) throw platform::CredentialError(failed);
  }
  std::optional<QByteArray> item;
  std::string log;
  bool isLocked = false, staysLocked = false, isFailing = false;
  std::optional<QPromise<void>> user;
};

class AccountStoreTest : public testing::OnlineTest {
 protected:
  auto signIn(const char* name = "ann") { return store_.signIn(existing, name, "a good password"); }
  bool isSignedIn(const char* name = "ann") {
    return store_.session() && store_.session()->customer.username == name;
  }
  bool isSignedOut() { return !store_.session() && !store_.isBusy() && !credentials_.item; }
  std::string message() { return store_.message().value_or(""); }
  bool hasLeft() { return preferences_.boolean("accountSignedOut"); }
  std::size_t count(const char* pattern) { return service_.requests(pattern).size(); }
  /// What an earlier process stored.
  void store(const std::string& account) {
    VelmoraSession session;
    session.customer.id = *UUID::parse(account);
    session.customer.username = "old name";
    session.sessionToken = service_.openSession(account);
    session.expiresAt = "then";
    credentials_.item = encodeSession(session);
  }
  static QCoro::Task<> nothing() { co_return; }
  static QCoro::Task<> ended(QCoro::Task<bool> task) { co_await task; }

  const std::string ann_ = service_.addAccount({.username = "ann", .displayName = "Ann"});
  const std::string bob_ = service_.addAccount({.username = "bob"});
  Credentials credentials_;
  std::string reports_;
  Telemetry telemetry_{preferences_,
                       [this](const QByteArray& body, const std::string&) {
                         reports_ += body.toStdString();
                         return nothing();
                       },
                       {.automaticDelivery = false}};
  AccountStore store_{AccountAPI(client_, service_.address()), credentials_, preferences_, telemetry_};
};

TEST_F(AccountStoreTest, SignsInAndOut) {
  EXPECT_TRUE(store_.isStarting());
  resultOf(store_.start());
  EXPECT_FALSE(store_.isStarting());
  store_.message.set("An old line.");
  EXPECT_TRUE(resultOf(signIn()));
  EXPECT_TRUE(isSignedIn());
  EXPECT_EQ(message(), "");
  EXPECT_FALSE(store_.isBusy() || hasLeft());
  EXPECT_EQ(credentials_.log, "load unlock update add update ");  // the last one by the refresh
  EXPECT_EQ(count("GET /api/v1/me$"), 1);
  EXPECT_EQ(count("POST /api/v1/activity$"), 1);
  const std::string token = store_.session()->sessionToken;

  const auto sent = count("");
  EXPECT_FALSE(resultOf(signIn("bob")));
  EXPECT_EQ(count(""), sent);
  resultOf(store_.start());
  EXPECT_EQ(count(""), sent);

  store_.showsAccount.set(true);
  resultOf(store_.signOut());
  EXPECT_TRUE(isSignedOut() && hasLeft());
  EXPECT_FALSE(store_.showsAccount() || service_.isSignedIn(token));

  EXPECT_FALSE(resultOf(store_.signIn(existing, " ann ", "x")));
  EXPECT_THAT(service_.requests("auth/password").back().body, HasSubstr("\" ann \""));
  EXPECT_EQ(message(), "The username or the password is wrong.");
  EXPECT_TRUE(isSignedOut());
  EXPECT_TRUE(resultOf(store_.signIn(created, "new_one", "a good password")));
  EXPECT_TRUE(isSignedIn("new_one"));
  service_.cut("sign-out");
  resultOf(store_.signOut());
  EXPECT_TRUE(isSignedOut() && hasLeft());
  EXPECT_EQ(message(), "");
}

TEST_F(AccountStoreTest, StartsWithWhatIsStored) {
  store(ann_);
  preferences_.set("accountSignedOut", true);
  AccountStore left(AccountAPI(client_, service_.address()), credentials_, preferences_, telemetry_);
  resultOf(left.start());
  EXPECT_FALSE(left.session() || left.isStarting());
  EXPECT_EQ(credentials_.log, "");

  preferences_.set("accountSignedOut", false);
  credentials_.isLocked = true;
  credentials_.user.emplace().start();
  auto starting = store_.start();
  EXPECT_TRUE(store_.isStarting());
  EXPECT_EQ(credentials_.log, "load unlock ");
  credentials_.user->finish();
  resultOf(std::move(starting));
  EXPECT_TRUE(isSignedIn());  // and no longer by the old name
  EXPECT_EQ(store_.session()->expiresAt, "then");
  EXPECT_EQ(decodeSession(JSONValue::parse(*credentials_.item)), store_.session());
}

TEST_F(AccountStoreTest, StartsSignedOutWhenTheStoreFails) {
  const struct {
    void (*spoil)(Credentials&);
    const char* message;
  } rows[] = {{[](Credentials& it) { it.isFailing = true; }, failed},
              {[](Credentials& it) { it.isLocked = it.staysLocked = true; }, "locked"},
              {[](Credentials& it) { it.item = "{}"; },
               "The stored session can't be read: \"customer\" is missing."}};
  for (const auto& row : rows) {
    credentials_ = {};
    store(ann_);
    row.spoil(credentials_);
    AccountStore fresh(AccountAPI(client_, service_.address()), credentials_, preferences_, telemetry_);
    resultOf(fresh.start());
    EXPECT_EQ(fresh.message(), row.message);
    EXPECT_FALSE(fresh.session() || fresh.isStarting() || preferences_.boolean("accountSignedOut"));
  }
}

/// What the user does while the desktop asks for the keyring comes first.
TEST_F(AccountStoreTest, ComparesTheAccountAfterTheKeyring) {
  store(ann_);
  credentials_.isLocked = true;
  credentials_.user.emplace().start();
  auto starting = store_.start();
  store_.clearLocalSession();
  auto signing = signIn("bob");
  ASSERT_TRUE(spinUntil([&] { return credentials_.log.ends_with("unlock remove unlock "); }));
  store_.clearLocalSession();
  credentials_.user->finish();
  resultOf(std::move(starting));
  EXPECT_FALSE(resultOf(std::move(signing)));
  EXPECT_FALSE(store_.session() || store_.isBusy());
  EXPECT_EQ(credentials_.log, "load unlock remove unlock remove ");
}

/// Each answer comes when another account is about to be the current one.
TEST_F(AccountStoreTest, DropsAnAnswerOfAnotherAccount) {
  const auto refresh = [](AccountStore& store) { return store.refresh(); };
  const struct {
    const char* request;
    QCoro::Task<> (*start)(AccountStore&);
    bool needsSession = true;
  } rows[] = {{"auth/register",
               [](auto& store) { return ended(store.signIn(created, "eve", "a good password")); }, false},
              {"GET /api/v1/me", refresh},
              {"activity", refresh},
              {"account/password",
               [](auto& store) { return ended(store.changePassword("a good password", "another one")); }},
              {"sign-out", [](auto& store) { return store.signOut(); }},
              {"DELETE", [](auto& store) { return store.deleteAccount(); }}};
  for (const auto& row : rows)
    for (const int status : {200, 401}) {
      SCOPED_TRACE(row.request + std::to_string(status));
      service_.addAccount({.username = "ann"});
      ASSERT_EQ(row.needsSession && resultOf(signIn()), row.needsSession);
      const auto requests = count(row.request), signIns = count("auth/password");
      service_.hold(row.request);
      if (status != 200) service_.answer(row.request, status, "{}");
      auto dropped = row.start(store_);
      ASSERT_TRUE(service_.await(row.request, requests + 1));
      EXPECT_FALSE(resultOf(signIn("bob")));
      store_.clearLocalSession();
      service_.hold("auth/password");
      auto signing = signIn("bob");
      ASSERT_TRUE(service_.await("auth/password", signIns + 1));
      service_.release(row.request);
      resultOf(std::move(dropped));
      EXPECT_TRUE(store_.isBusy() && !store_.session() && !credentials_.item);
      service_.release();
      EXPECT_TRUE(resultOf(std::move(signing)) && isSignedIn("bob"));
      EXPECT_EQ(message(), "");
      store_.clearLocalSession();
    }
}

TEST_F(AccountStoreTest, EndsTheSessionOnlyWhenTheServiceSaysSo) {
  for (const char* request : {"GET /api/v1/me", "POST /api/v1/activity"})
    for (const int status : {401, 403, 500, 200}) {
      SCOPED_TRACE(request + std::to_string(status));
      ASSERT_TRUE(resultOf(signIn()));
      telemetry_.setConsent(true);
      service_.answer(request, status, "{}");
      reports_.clear();
      resultOf(store_.refresh());
      EXPECT_EQ(isSignedOut(), status == 401);
      EXPECT_EQ(message(), status == 401 ? "Please sign in again." : "");
      resultOf(telemetry_.deliver());
      EXPECT_EQ(reports_.find("account_refresh_failed") != std::string::npos, status != 401);
      store_.clearLocalSession();
    }
}

TEST_F(AccountStoreTest, KeepsNoSessionThatIsNotStored) {
  credentials_.isFailing = true;
  EXPECT_FALSE(resultOf(signIn()));
  EXPECT_EQ(message(), failed);
  EXPECT_TRUE(isSignedOut());

  credentials_.isFailing = false;
  store(ann_);
  resultOf(store_.start());
  const auto activities = count("activity");
  service_.answer("GET /api/v1/me", 200, R"({"customer": {"id": ")" + bob_ + R"("}})");
  telemetry_.setConsent(true);
  credentials_.isFailing = true;
  resultOf(store_.refresh());
  resultOf(telemetry_.deliver());
  EXPECT_TRUE(isSignedIn());
  EXPECT_THAT(reports_, HasSubstr("account_refresh_failed"));
  EXPECT_EQ(count("activity"), activities + 1);
  EXPECT_FALSE(resultOf(store_.changePassword("a good password", "a better password")));
  EXPECT_EQ(message(), failed);
  EXPECT_FALSE(store_.isBusy());
  resultOf(store_.signOut());
  EXPECT_FALSE(store_.session());
  EXPECT_EQ(message(), failed);
}

TEST_F(AccountStoreTest, ChangesThePassword) {
  EXPECT_FALSE(resultOf(store_.changePassword("a", "b")));
  ASSERT_TRUE(resultOf(signIn()));
  const std::string old = store_.session()->sessionToken;
  service_.hold("/me");
  service_.answer("/me", 401, "{}");
  auto refreshing = store_.refresh();  // by the old session
  EXPECT_FALSE(resultOf(store_.changePassword("wrong", "a better password")));
  EXPECT_EQ(message(), "The current password is wrong.");
  EXPECT_TRUE(resultOf(store_.changePassword("a good password", "a better password")));
  EXPECT_EQ(message(), "Password changed. Other devices have been signed out.");
  service_.release();
  resultOf(std::move(refreshing));
  ASSERT_TRUE(isSignedIn());
  EXPECT_NE(store_.session()->sessionToken, old);
  EXPECT_EQ(decodeSession(JSONValue::parse(*credentials_.item)), store_.session());

  service_.answer("/me", 200, R"({"customer": {"id": ")" + ann_ + R"("}})");
  resultOf(store_.refresh());
  EXPECT_FALSE(resultOf(store_.changePassword("a better password", "a good password")));
  EXPECT_EQ(count("account/password"), 2);
}

TEST_F(AccountStoreTest, DeletesTheAccountOnlyWithTheService) {
  ASSERT_TRUE(resultOf(signIn()));
  service_.answer("DELETE", 500, R"({"error": "Not today."})");
  resultOf(store_.deleteAccount());
  EXPECT_TRUE(isSignedIn() && credentials_.item && !store_.isBusy());
  EXPECT_EQ(message(), "Not today.");
  resultOf(store_.deleteAccount());
  EXPECT_TRUE(isSignedOut() && !service_.hasAccount("ann"));
  EXPECT_EQ(message(), "Your Velmora account has been deleted. Local projects are still on this device.");
}

}  // namespace
}  // namespace velmora
