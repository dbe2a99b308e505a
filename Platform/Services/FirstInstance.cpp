#include "Platform/Services/FirstInstance.h"

#include <QLocalSocket>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr int patience = 1000;  // milliseconds

}  // namespace

FirstInstance::FirstInstance(const std::filesystem::path& folder)
    : channel_(QString::fromStdString(folder / "studio.socket")) {
  std::error_code unmade;  // then the lock can't be opened either
  std::filesystem::create_directories(folder, unmade);
  lock_ = open((folder / "studio.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  isFirst_ = lock_ < 0 || flock(lock_, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
  if (isFirst_ && lock_ >= 0) listen();
}

FirstInstance::~FirstInstance() {
  server_.close();
  if (lock_ >= 0) close(lock_);
}

/// Whoever holds the lock may take away the channel of a process that died.
void FirstInstance::listen() {
  QLocalServer::removeServer(channel_);
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] {
    delete server_.nextPendingConnection();
    if (onCall_) onCall_();
  });
  server_.listen(channel_);
}

void FirstInstance::callFirst() const {
  QLocalSocket socket;
  socket.connectToServer(channel_);
  socket.waitForConnected(patience);
}

}  // namespace platform
