#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDeadlineTimer>
#include <QProcess>
#include <csignal>
#include <fstream>
#include <gmock/gmock.h>

#include "Platform/Services/SecretServiceStore.h"
#include "Platform/Tasks/ResultOf.h"
#include "tests/support/EventLoopTest.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Variable.h"

namespace platform {
namespace {

using velmora::testing::TemporaryFolder;
using velmora::testing::Variable;

constexpr char service[] = "org.freedesktop.secrets";

/// A session bus of the test's own where nothing starts by itself, and the real keyring on it when it's
/// wanted.
class SecretServiceTest : public velmora::testing::EventLoopTest {
 protected:
  struct Process : QProcess {
    ~Process() override {
      kill();
      waitForFinished();
    }
  };

  SecretServiceTest() {
    std::ofstream(folder_ / "bus.conf")
        << "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><policy context='default'>"
           "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/><allow own='*'/>"
           "</policy></busconfig>";
    const auto configuration = QString::fromStdString("--config-file=" + (folder_ / "bus.conf").string());
    bus_.start("dbus-daemon", {configuration, "--print-address", "--nofork"});
    bus_.waitForReadyRead();
    const QString address = bus_.readLine().trimmed();
    address_.emplace("DBUS_SESSION_BUS_ADDRESS", qPrintable(address));
    connection_ = QDBusConnection::connectToBus(address, "keyring");
  }
  ~SecretServiceTest() override { QDBusConnection::disconnectFromBus("keyring"); }

  /// Open, with what it held before.
  void startKeyring() {
    endKeyring();
    keyring_.emplace();
    keyring_->start("gnome-keyring-daemon", {"--foreground", "--unlock", "--components=secrets"});
    keyring_->write("password");
    keyring_->closeWriteChannel();
    ASSERT_TRUE(await(true));
  }
  void endKeyring() {
    keyring_.reset();
    ASSERT_TRUE(await(false));
  }
  void lock() {
    auto call = QDBusMessage::createMethodCall(service, "/org/freedesktop/secrets",
                                               "org.freedesktop.Secret.Service", "Lock");
    call << QVariant::fromValue(QList{QDBusObjectPath("/org/freedesktop/secrets/collection/login")});
    ASSERT_EQ(connection_.call(call).type(), QDBusMessage::ReplyMessage);
  }
  bool await(bool isThere) {
    const QDeadlineTimer deadline(10000);
    while (connection_.interface()->isServiceRegistered(service) != isThere && !deadline.hasExpired())
      QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return !deadline.hasExpired();
  }

  template <class Error = CredentialError>
  static void expectAllToFail(CredentialStore& store, const char* line) {
    const std::function<void()> calls[] = {[&] { store.load(); }, [&] { store.update("x"); },
                                           [&] { store.add("x"); }, [&] { store.remove(); }};
    for (const auto& call : calls) EXPECT_THAT(call, ::testing::ThrowsMessage<Error>(line));
  }
  static void unlock(CredentialStore& store) { resultOf(store.unlock()); }

  TemporaryFolder folder_;
  Variable home_{"HOME", folder_.path().c_str()}, data_{"XDG_DATA_HOME", folder_.path().c_str()},
      runtime_{"XDG_RUNTIME_DIR", folder_.path().c_str()};
  Process bus_;
  std::optional<Variable> address_;
  QDBusConnection connection_{""};
  std::optional<Process> keyring_;
  SecretServiceStore store_{{"org.test.account", "session", "Test account"}};
};

TEST_F(SecretServiceTest, SaysThatThereIsNoKeyring) {
  constexpr char line[] = "There is no keyring (Secret Service) on this desktop.";
  unlock(store_);
  expectAllToFail(store_, line);
  const Variable noBus("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
  unlock(store_);
  expectAllToFail(store_, line);
}

TEST_F(SecretServiceTest, KeepsOneItem) {
  startKeyring();
  unlock(store_);
  SecretServiceStore other{{"org.test.account", "another", "Test account"}};
  EXPECT_EQ(store_.load(), std::nullopt);
  EXPECT_FALSE(store_.update("lost"));
  EXPECT_FALSE(store_.remove());

  const QByteArray value("first \0 é", 10);
  store_.add(value);
  EXPECT_EQ(store_.load(), value);
  EXPECT_TRUE(store_.update("second"));
  EXPECT_EQ(store_.load(), "second");
  EXPECT_EQ(other.load(), std::nullopt);
  EXPECT_FALSE(other.remove());
  startKeyring();  // a new process on the same disk
  EXPECT_EQ(store_.load(), "second");
  EXPECT_TRUE(store_.remove());
  EXPECT_EQ(store_.load(), std::nullopt);
}

/// Nobody is there to answer the desktop's question.
TEST_F(SecretServiceTest, StaysLockedUntilTheUserUnlocksIt) {
  startKeyring();
  store_.add("kept");
  lock();
  constexpr char line[] = "The keyring is locked. Unlock it and try again.";
  for (const bool isAsked : {false, true}) {
    if (isAsked) unlock(store_);
    expectAllToFail<CredentialLocked>(store_, line);
  }
  SecretServiceStore empty{{"org.test.account", "another", "Test account"}};
  EXPECT_EQ(empty.load(), std::nullopt);
  EXPECT_FALSE(empty.remove());
  unlock(empty);
  EXPECT_THROW(empty.add("x"), CredentialLocked);
  startKeyring();
  EXPECT_EQ(store_.load(), "kept");
}

TEST_F(SecretServiceTest, GivesUpAKeyringThatHangs) {
  startKeyring();
  ::kill(static_cast<pid_t>(keyring_->processId()), SIGSTOP);
  EXPECT_THAT([&] { store_.load(); },
              ::testing::ThrowsMessage<CredentialError>("The keyring does not answer."));
  std::optional<SecretServiceStore> leaving(SecretServiceStore::Item{"org.test.account", "session", ""});
  auto unlocking = leaving->unlock();
  leaving.reset();
  resultOf(std::move(unlocking));
}

}  // namespace
}  // namespace platform
