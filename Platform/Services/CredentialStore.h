#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <optional>
#include <stdexcept>
#include <string>

namespace platform {

/// A credential store that couldn't do what it was asked: one line in words.
struct CredentialError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The item is there, or would be, but its store is locked.
struct CredentialLocked : CredentialError {
  using CredentialError::CredentialError;
};

/// One secret item of the user's, found by its service and account. A missing item is an answer, not a
/// failure. The calls wait for the desktop, for a moment only, and never ask the user anything.
class CredentialStore {
 public:
  virtual ~CredentialStore() = default;

  /// Lets the user unlock a locked store, where there is one, without keeping the caller's thread. Never
  /// throws: what stays locked fails later.
  virtual QCoro::Task<> unlock() = 0;

  /// Nothing if the item is missing. Throws `CredentialError`, as the others do, and `CredentialLocked` where
  /// `unlock` may help.
  virtual std::optional<QByteArray> load() = 0;
  /// Gives an existing item a new value; false if the item is missing.
  virtual bool update(const QByteArray& value) = 0;
  virtual void add(const QByteArray& value) = 0;
  /// False if the item was missing.
  virtual bool remove() = 0;
};

}  // namespace platform
