#include "Velmora/Online/Account/AccountStore.h"

#include <utility>

#include "Platform/Tasks/TaskOutcome.h"
#include "Velmora/Online/Account/Telemetry.h"

namespace velmora {
namespace {

/// The user left on purpose: what is stored isn't loaded at the next start.
const QString signedOutKey = QStringLiteral("accountSignedOut");

constexpr int unauthorized = 401;

template <class Failure, class Test>
bool is(const std::exception_ptr& error, Test test) {
  if (!error) return false;
  try {
    std::rethrow_exception(error);
  } catch (const Failure& failure) {
    return test(failure);
  } catch (...) {
    return false;
  }
}

bool isLocked(const std::exception_ptr& error) {
  return is<platform::CredentialLocked>(error, [](const auto&) { return true; });
}

bool isUnauthorized(const std::exception_ptr& error) {
  return is<AccountAPIError>(error, [](const auto& failure) { return failure.status() == unauthorized; });
}

}  // namespace

AccountStore::AccountStore(AccountAPI api, platform::CredentialStore& credentials,
                           platform::Preferences& preferences, Telemetry& telemetry)
    : api_(std::move(api)), credentials_(credentials), preferences_(preferences), telemetry_(telemetry) {}

QCoro::Task<> AccountStore::start() {
  if (std::exchange(started_, true)) co_return;
  if (!preferences_.boolean(signedOutKey)) {
    auto reading = readSession();
    co_await reading;
  }
  isStarting.set(false);
  auto refreshing = refresh();
  co_await refreshing;
}

/// The user is asked to unlock the store only where there is a session in it. What they do here meanwhile
/// comes first.
QCoro::Task<> AccountStore::readSession() {
  const auto load = [this] { return SessionKeychain::load(credentials_); };
  const std::int64_t before = generation_;
  auto found = platform::outcomeOf(load);
  if (isLocked(found.error)) {
    auto unlocking = credentials_.unlock();
    co_await unlocking;
    if (generation_ != before) co_return;
    found = platform::outcomeOf(load);
  }
  if (found.error)
    report(found.error);
  else
    setSession(found.take());
}

QCoro::Task<> AccountStore::refresh() {
  if (refreshing_ || !session()) co_return;
  refreshing_ = true;
  const std::int64_t before = generation_;
  auto updating = platform::outcomeOf(updateCustomer(session()->sessionToken));
  const Answer<void> answer = co_await updating;
  if (answer.error && generation_ == before) refreshFailed(answer.error);
  refreshing_ = false;
}

/// A customer that can't be stored isn't taken over, and yet was active.
QCoro::Task<> AccountStore::updateCustomer(std::string token) {
  const std::int64_t before = generation_;
  auto asking = api_.fetchMe(token);
  VelmoraCustomer customer = co_await asking;
  if (generation_ != before) co_return;

  VelmoraSession updated = *session();
  updated.customer = std::move(customer);
  const auto save = [&] { SessionKeychain::save(credentials_, updated); };
  auto saving = platform::outcomeOf(save);
  if (!saving.error) setSession(std::move(updated));

  auto recording = api_.recordActivity(std::move(token));
  co_await recording;
  saving.take();
}

void AccountStore::refreshFailed(const std::exception_ptr& error) {
  telemetry_.record(TelemetryEvent::accountRefreshFailed);
  if (!isUnauthorized(error)) return;
  clearLocalSession();
  message.set("Please sign in again.");
}

QCoro::Task<bool> AccountStore::signIn(AccountAPI::Account account, std::string username,
                                       std::string password) {
  if (isBusy() || session()) co_return false;
  const std::uint64_t operation = beginOperation();
  message.set({});
  auto signing = platform::outcomeOf(api_.signIn(account, std::move(username), std::move(password)));
  auto storing = stored(generation_, std::move(signing));
  std::optional<VelmoraSession> fresh = co_await storing;
  const bool isSignedIn = fresh.has_value();
  if (isSignedIn) {
    preferences_.set(signedOutKey, false);
    signInFlow_.reset();
    setSession(std::move(fresh));
    ++generation_;
    auto refreshing = refresh();
    co_await refreshing;
  }
  endOperation(operation);
  co_return isSignedIn;
}

QCoro::Task<bool> AccountStore::changePassword(std::string currentPassword, std::string newPassword) {
  if (isBusy() || !session() || !session()->customer.username) co_return false;
  const std::uint64_t operation = beginOperation();
  message.set({});
  auto changing = platform::outcomeOf(
      api_.changePassword(session()->sessionToken, std::move(currentPassword), std::move(newPassword)));
  auto storing = stored(generation_, std::move(changing));
  std::optional<VelmoraSession> fresh = co_await storing;
  const bool isChanged = fresh.has_value();
  if (isChanged) {
    setSession(std::move(fresh));
    ++generation_;
    message.set("Password changed. Other devices have been signed out.");
  }
  endOperation(operation);
  co_return isChanged;
}

/// The answer's session once the credential store has it. None, with the reason in `message`, if something
/// failed; none and not a word if the account is no longer that of `generation`.
QCoro::Task<std::optional<VelmoraSession>> AccountStore::stored(
    std::int64_t generation, QCoro::Task<Answer<VelmoraSession>> answering) {
  Answer<VelmoraSession> answer = co_await answering;
  if (generation_ == generation && !answer.error) {
    auto unlocking = credentials_.unlock();
    co_await unlocking;
  }
  if (generation_ != generation) co_return {};
  try {
    VelmoraSession fresh = answer.take();
    SessionKeychain::save(credentials_, fresh);
    co_return fresh;
  } catch (...) {
    report(std::current_exception());
  }
  co_return {};
}

QCoro::Task<> AccountStore::signOut() {
  if (isBusy()) co_return;
  beginOperation();
  message.set({});
  const std::int64_t before = generation_;
  if (session()) {
    auto leaving = platform::outcomeOf(api_.signOut(session()->sessionToken));
    co_await leaving;
  }
  if (generation_ == before) clearLocalSession();
}

QCoro::Task<> AccountStore::deleteAccount() {
  if (isBusy() || !session()) co_return;
  const std::uint64_t operation = beginOperation();
  const std::int64_t before = generation_;
  auto deleting = platform::outcomeOf(api_.deleteAccount(session()->sessionToken));
  const Answer<void> answer = co_await deleting;
  if (generation_ == before) {
    if (answer.error) {
      report(answer.error);
    } else {
      clearLocalSession();
      message.set("Your Velmora account has been deleted. Local projects are still on this device.");
    }
  }
  endOperation(operation);
}

void AccountStore::clearLocalSession() {
  preferences_.set(signedOutKey, true);
  ++generation_;
  signInFlow_.reset();
  isBusy.set(false);
  setSession({});
  showsAccount.set(false);
  try {
    SessionKeychain::remove(credentials_);
  } catch (...) {
    report(std::current_exception());
  }
}

void AccountStore::setSession(std::optional<VelmoraSession> value) {
  session.set(std::move(value));
  if (session())
    telemetry_.setAccount(session()->customer.id, session()->sessionToken);
  else
    telemetry_.setAccount({}, {});
}

void AccountStore::report(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const std::exception& failure) {
    message.set(failure.what());
  }
}

/// An operation ends only what it began: another one may have begun after a change of account.
std::uint64_t AccountStore::beginOperation() {
  isBusy.set(true);
  return ++operation_;
}

void AccountStore::endOperation(std::uint64_t operation) {
  if (operation == operation_) isBusy.set(false);
}

}  // namespace velmora
