#pragma once

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>

#include "Platform/Services/CredentialStore.h"
#include "Platform/Services/Preferences.h"
#include "Platform/Tasks/Outcome.h"
#include "Velmora/Model/Observed.h"
#include "Velmora/Online/Account/AccountAPI.h"
#include "Velmora/Online/Account/AppleSignInFlow.h"
#include "Velmora/Online/Account/SessionKeychain.h"

namespace velmora {

class Telemetry;

/// Who is signed in: the one object that holds the session, keeps it in the credential store and runs the
/// operations of the account. Answers that arrive after the account changed are dropped. Main thread, as long
/// as the process; the tasks run whether they are awaited or not and report their own failures.
class AccountStore final : public QObject {
 public:
  /// All three outlive the store.
  AccountStore(AccountAPI api, platform::CredentialStore& credentials, platform::Preferences& preferences,
               Telemetry& telemetry);

  Observed<std::optional<VelmoraSession>, AccountStore> session;  ///< none while signed out
  Observed<bool, AccountStore> isStarting{true};
  Observed<bool, AccountStore> isBusy;  ///< an operation that the user asked for is running
  Shared<std::optional<std::string>, AccountStore> message;  ///< the one line of the account's forms
  Shared<bool, AccountStore> showsAccount;
  Shared<bool, AccountStore> showsCommunity;

  /// What the first window asks for once it is on the screen.
  QCoro::Task<> start();
  /// Asks the service who this is; also each time that the application becomes active.
  QCoro::Task<> refresh();
  /// True once signed in.
  QCoro::Task<bool> signIn(AccountAPI::Account account, std::string username, std::string password);
  /// True once the password is changed.
  QCoro::Task<bool> changePassword(std::string currentPassword, std::string newPassword);
  /// Doesn't depend on the service: whatever it says, this computer forgets the session.
  QCoro::Task<> signOut();
  QCoro::Task<> deleteAccount();

  /// Forgets the session on this computer, now, and drops every answer under way.
  void clearLocalSession();

 private:
  template <class Value>
  using Answer = platform::Outcome<Value>;

  QCoro::Task<> readSession();
  QCoro::Task<> updateCustomer(std::string token);
  void refreshFailed(const std::exception_ptr& error);
  QCoro::Task<std::optional<VelmoraSession>> stored(std::int64_t generation,
                                                    QCoro::Task<Answer<VelmoraSession>> answering);
  void setSession(std::optional<VelmoraSession> value);
  void report(const std::exception_ptr& error);
  std::uint64_t beginOperation();
  void endOperation(std::uint64_t operation);

  const AccountAPI api_;
  platform::CredentialStore& credentials_;
  platform::Preferences& preferences_;
  Telemetry& telemetry_;

  bool started_ = false;
  bool refreshing_ = false;
  AppleSignInFlow signInFlow_;
  std::int64_t generation_ = 0;  // raised at each change of account
  std::uint64_t operation_ = 0;  // the latest that set `isBusy`
};

}  // namespace velmora
