#include "Platform/Services/SecretServiceStore.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <libsecret/secret.h>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace platform {
namespace {

using namespace std::chrono_literals;

constexpr auto patienceWithService = 2s;
constexpr auto patienceWithUser = 5min;

constexpr char locked[] = "The keyring is locked. Unlock it and try again.";
constexpr char absent[] = "There is no keyring (Secret Service) on this desktop.";
constexpr char silent[] = "The keyring does not answer.";

/// A generic password, found by service and account.
constexpr SecretSchema schema{
    .name = "org.freedesktop.Secret.Generic",
    .flags = SECRET_SCHEMA_NONE,
    .attributes = {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING}, {"account", SECRET_SCHEMA_ATTRIBUTE_STRING}}};

template <auto release>
struct Release {
  template <class Value>
  void operator()(Value* value) const {
    release(value);
  }
};
template <class Value>
using Object = std::unique_ptr<Value, Release<g_object_unref>>;
using Attributes = std::unique_ptr<GHashTable, Release<g_hash_table_unref>>;
using Secret = std::unique_ptr<SecretValue, Release<secret_value_unref>>;  // wipes it

/// Items, the first one unlocked if any is.
using Items = std::unique_ptr<GList, decltype([](GList* list) { g_list_free_full(list, g_object_unref); })>;
SecretItem* itemIn(GList* place) { return static_cast<SecretItem*>(place->data); }

/// Receives the error of one call and throws it in words.
class Failure {
 public:
  ~Failure() { g_clear_error(&error_); }
  operator GError**() { return &error_; }  // NOLINT: the library's way to hand it over

  void check() const {
    if (!error_) return;
    if (is(SECRET_ERROR, {SECRET_ERROR_IS_LOCKED})) throw CredentialLocked(locked);
    if (is(G_IO_ERROR, {G_IO_ERROR_CANCELLED, G_IO_ERROR_TIMED_OUT}) ||
        is(G_DBUS_ERROR, {G_DBUS_ERROR_NO_REPLY, G_DBUS_ERROR_TIMEOUT, G_DBUS_ERROR_TIMED_OUT}))
      throw CredentialError(silent);
    if (is(G_DBUS_ERROR, {G_DBUS_ERROR_SERVICE_UNKNOWN, G_DBUS_ERROR_NAME_HAS_NO_OWNER}))
      throw CredentialError(absent);
    throw CredentialError("The keyring failed to do what it was asked.");
  }

 private:
  bool is(GQuark domain, std::initializer_list<int> codes) const {
    for (const int code : codes)
      if (g_error_matches(error_, domain, code)) return true;
    return false;
  }

  GError* error_ = nullptr;
};

/// Cancels calls that take too long, or that nobody waits for any more.
class Patience {
 public:
  explicit Patience(std::chrono::milliseconds limit, std::stop_token stop = {})
      : cancellable_(g_cancellable_new()),
        onStop_(std::move(stop), [this] { g_cancellable_cancel(cancellable()); }),
        timer_([this, limit](const std::stop_token& ended) {
          std::unique_lock lock(mutex_);
          asleep_.wait_for(lock, ended, limit, [] { return false; });
          if (!ended.stop_requested()) g_cancellable_cancel(cancellable());
        }) {}

  GCancellable* cancellable() const { return cancellable_.get(); }

 private:
  const Object<GCancellable> cancellable_;
  const std::stop_callback<std::function<void()>> onStop_;
  std::mutex mutex_;
  std::condition_variable_any asleep_;
  const std::jthread timer_;  // last: uses the others
};

/// Where the library leaves work for later, which is done at the end: whoever calls needs no loop of their
/// own.
class Loop {
 public:
  Loop() : context_(g_main_context_new()) { g_main_context_push_thread_default(context_.get()); }
  ~Loop() {
    while (g_main_context_iteration(context_.get(), false)) {
    }
    g_main_context_pop_thread_default(context_.get());
  }
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

 private:
  const std::unique_ptr<GMainContext, Release<g_main_context_unref>> context_;
};

/// The service as it is now, for one call.
class Session {
 public:
  explicit Session(const SecretServiceStore::Item& item, std::stop_token stop = {})
      : item_(item),
        patience_(patienceWithService, std::move(stop)),
        attributes_(secret_attributes_build(&schema, "service", item.service.c_str(), "account",
                                            item.account.c_str(), nullptr)) {
    bus_.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable(), nullptr));
    if (!bus_) throw CredentialError(absent);
    g_dbus_connection_set_exit_on_close(bus_.get(),
                                        false);  // or else the end of the bus would end the process
    Failure failure;
    service_.reset(
        secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_NONE, cancellable(), failure));
    failure.check();
  }

  Items find(int flags = SECRET_SEARCH_NONE) const {
    Failure failure;
    Items items(secret_service_search_sync(service(), &schema, attributes_.get(),
                                           static_cast<SecretSearchFlags>(flags), cancellable(), failure));
    failure.check();
    return items;
  }

  /// The keyring that takes new items; null if there is none.
  Object<SecretCollection> collection() const {
    Failure failure;
    Object<SecretCollection> found(secret_collection_for_alias_sync(
        service(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, cancellable(), failure));
    failure.check();
    return found;
  }

  void create(SecretCollection* collection, SecretValue* value) const {
    Failure failure;
    const Object<SecretItem> created(
        secret_item_create_sync(collection, &schema, attributes_.get(), item_.label.c_str(), value,
                                SECRET_ITEM_CREATE_REPLACE, cancellable(), failure));
    failure.check();
  }

  SecretService* service() const { return service_.get(); }
  GCancellable* cancellable() const { return patience_.cancellable(); }

 private:
  const Loop loop_;  // outlives whatever the library made
  const SecretServiceStore::Item& item_;
  const Patience patience_;
  const Attributes attributes_;
  Object<GDBusConnection> bus_;
  Object<SecretService> service_;
};

/// The library would ask the user.
void refuseLocked(bool isLocked) {
  if (isLocked) throw CredentialLocked(locked);
}

Secret secretOf(const QByteArray& value) {
  return Secret(secret_value_new(value.constData(), value.size(), "application/json"));
}

/// Waits for the user. What they refuse stays as it was.
void ask(const Session& session, GList* what, const std::stop_token& stop) {
  const Patience patience(patienceWithUser, stop);
  secret_service_unlock_sync(session.service(), what, patience.cancellable(), nullptr, nullptr);
}

void makeKeyring(const Session& session, const std::stop_token& stop) {
  const Patience patience(patienceWithUser, stop);
  const Object<SecretCollection> made(
      secret_collection_create_sync(session.service(), "Default keyring", SECRET_COLLECTION_DEFAULT,
                                    SECRET_COLLECTION_CREATE_NONE, patience.cancellable(), nullptr));
}

void unlockKeyring(const SecretServiceStore::Item& item, const std::stop_token& stop) {
  const Session session(item, stop);
  if (const Items items = session.find()) {
    if (secret_item_get_locked(itemIn(items.get()))) ask(session, items.get(), stop);
    return;
  }
  const auto collection = session.collection();
  if (!collection) return makeKeyring(session, stop);
  GList only{.data = collection.get(), .next = nullptr, .prev = nullptr};
  if (secret_collection_get_locked(collection.get())) ask(session, &only, stop);
}

}  // namespace

SecretServiceStore::SecretServiceStore(Item item) : item_(std::move(item)) {}

SecretServiceStore::~SecretServiceStore() { end_.request_stop(); }

QCoro::Task<> SecretServiceStore::unlock() {
  auto work = [item = item_, stop = end_.get_token()] {
    try {
      unlockKeyring(item, stop);
    } catch (const CredentialError&) {  // whoever uses the store next will hear it
    }
  };
  auto asking = unlocking_.run(std::move(work));
  co_await asking;
}

std::optional<QByteArray> SecretServiceStore::load() {
  const Session session(item_);
  const Items items = session.find();
  if (!items) return {};
  SecretItem* const item = itemIn(items.get());
  refuseLocked(secret_item_get_locked(item));
  Failure failure;
  secret_item_load_secret_sync(item, session.cancellable(), failure);
  failure.check();
  const Secret secret(secret_item_get_secret(item));
  if (!secret) throw CredentialError("The keyring has the item without a value.");
  gsize length = 0;
  const char* const value = secret_value_get(secret.get(), &length);
  return QByteArray(value, static_cast<qsizetype>(length));
}

bool SecretServiceStore::update(const QByteArray& value) {
  const Session session(item_);
  const Items items = session.find();
  if (!items) return false;
  SecretItem* const item = itemIn(items.get());
  refuseLocked(secret_item_get_locked(item));
  Failure failure;
  secret_item_set_secret_sync(item, secretOf(value).get(), session.cancellable(), failure);
  failure.check();
  return true;
}

void SecretServiceStore::add(const QByteArray& value) {
  const Session session(item_);
  const auto collection = session.collection();
  if (!collection) throw CredentialError("There is no keyring to store the item in.");
  refuseLocked(secret_collection_get_locked(collection.get()));
  session.create(collection.get(), secretOf(value).get());
}

/// In every keyring.
bool SecretServiceStore::remove() {
  const Session session(item_);
  const Items items = session.find(SECRET_SEARCH_ALL);
  for (GList* place = items.get(); place; place = place->next) {
    refuseLocked(secret_item_get_locked(itemIn(place)));
    Failure failure;
    secret_item_delete_sync(itemIn(place), session.cancellable(), failure);
    failure.check();
  }
  return items != nullptr;
}

}  // namespace platform
