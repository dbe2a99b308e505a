#pragma once

#include <QLocalServer>
#include <filesystem>
#include <functional>

namespace platform {

/// Keeps a folder to one process at a time: the first one holds its lock until it ends, however it ends, and
/// hears of every other that comes.
class FirstInstance {
 public:
  /// Takes the lock below `folder`, which is made if need be. Where no lock can be taken at all, as on a
  /// disk that can't be written, every process counts as the first.
  explicit FirstInstance(const std::filesystem::path& folder);
  ~FirstInstance();
  FirstInstance(const FirstInstance&) = delete;
  FirstInstance& operator=(const FirstInstance&) = delete;

  bool isFirst() const { return isFirst_; }

  /// `onCall` runs on the main thread when another process has called.
  void setOnCall(std::function<void()> onCall) { onCall_ = std::move(onCall); }

  /// Calls the first process; waits for at most a second.
  void callFirst() const;

 private:
  void listen();

  const QString channel_;
  int lock_ = -1;
  bool isFirst_ = true;
  QLocalServer server_;
  std::function<void()> onCall_;
};

}  // namespace platform
