#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <optional>
#include <stop_token>
#include <string>

#include "Platform/Services/CredentialStore.h"
#include "Platform/Tasks/SerialWorker.h"

namespace platform {

/// The desktop's keyring, by the Secret Service. Each call makes its own connection to the service, so that
/// what was locked, ended or started again since the last one is seen as it is, and gives up after two
/// seconds. Main thread.
class SecretServiceStore final : public CredentialStore {
 public:
  /// What the item is found by, and what the desktop calls it when it shows it to the user.
  struct Item {
    std::string service;
    std::string account;
    std::string label;
  };

  explicit SecretServiceStore(Item item);
  /// A question that waits for the user is taken back.
  ~SecretServiceStore() override;
  SecretServiceStore(const SecretServiceStore&) = delete;
  SecretServiceStore& operator=(const SecretServiceStore&) = delete;

  /// Asks for the keyring that holds the item, or that would take it. Given up after five minutes.
  QCoro::Task<> unlock() override;
  std::optional<QByteArray> load() override;
  bool update(const QByteArray& value) override;
  void add(const QByteArray& value) override;
  bool remove() override;

 private:
  const Item item_;
  std::stop_source end_;
  SerialWorker unlocking_;
};

}  // namespace platform
