#include "Platform/Services/UpdateInstaller.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <utility>

#include "Platform/Files/Files.h"

namespace platform {

namespace {

namespace fs = std::filesystem;

/// The canonical path that a variable holds; empty if there is nothing.
fs::path fromEnvironment(const char* variable) {
  const char* const value = std::getenv(variable);
  std::error_code none;
  return value && value[0] == '/' ? fs::canonical(value, none) : fs::path();
}

bool liesBelow(const fs::path& path, const fs::path& folder) {
  const auto [end, ignored] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
  return end == folder.end();
}

bool isSameFile(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino && one.st_size == other.st_size &&
         one.st_mtim.tv_sec == other.st_mtim.tv_sec && one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

}  // namespace

// Both variables are handed on to every program that is started from an image: this one is only meant if its
// own executable lies in the mounted folder.
fs::path UpdateInstaller::runningImage() {
  const fs::path image = fromEnvironment("APPIMAGE");
  const fs::path mounted = fromEnvironment("APPDIR");
  std::error_code unknown;
  const fs::path executable = fs::read_symlink("/proc/self/exe", unknown);
  return !mounted.empty() && liesBelow(executable, mounted) ? image : fs::path();
}

// Making a file is the surest way to know whether one can be made, and it sweeps.
bool UpdateInstaller::canInstall() const noexcept {
  if (program_.empty() || !isOwnFile(program_)) return false;
  if (file_) return true;
  try {
    const AtomicFile trial(program_, program_.filename().string());
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

void UpdateInstaller::begin(qint64 size, QByteArray hash) {
  discard();
  replaced_ = statusOfProgram();
  hash_ = std::move(hash);
  missing_ = size;
  sum_.reset();
  file_.emplace(program_, program_.filename().string());
}

void UpdateInstaller::append(const QByteArray& bytes) {
  missing_ -= bytes.size();
  if (missing_ < 0) throw FileError(program_, "The update is larger than announced");
  sum_.addData(bytes);
  file_->append(bytes.data(), static_cast<std::size_t>(bytes.size()));
}

void UpdateInstaller::complete() {
  if (missing_ > 0) throw FileError(program_, "The update didn't arrive whole");
  if (sum_.result() != hash_) throw FileError(program_, "The update isn't what was announced");
  isReady_ = true;
}

void UpdateInstaller::discard() noexcept {
  isReady_ = false;
  file_.reset();
}

void UpdateInstaller::install() {
  if (!std::exchange(isReady_, false)) return;
  if (!isSameFile(statusOfProgram(), replaced_)) throw FileError(program_, "Was replaced in the meantime");
  const fs::path old = program_.string() + ".old";
  keepAs(old);
  file_->commit();
  file_.reset();
  if (((statusOfProgram().st_mode ^ replaced_.st_mode) & 0777) == 0) return;
  ::rename(old.c_str(), program_.c_str());
  throw FileError(program_, "The update could not be made a program");
}

// The replacement takes the name only, so that a link is as good as a copy and costs nothing.
void UpdateInstaller::keepAs(const fs::path& old) const {
  if (::unlink(old.c_str()) != 0 && errno != ENOENT) throw FileError(old, errno);
  if (::link(program_.c_str(), old.c_str()) == 0) return;
  if (errno != EPERM && errno != ENOTSUP) throw FileError(old, errno);
  copyFile(program_, old);
}

struct stat UpdateInstaller::statusOfProgram() const {
  struct stat status {};
  if (::lstat(program_.c_str(), &status) != 0) throw FileError(program_, errno);
  return status;
}

void UpdateInstaller::finish() noexcept {
  try {
    install();
  } catch (const std::exception& error) {
    discard();
    std::fprintf(stderr, "The update could not be installed: %s\n", error.what());
  }
  if (relaunches_) relaunch();
}

void UpdateInstaller::relaunch() const noexcept {
  std::string name = program_.string();
  char* const arguments[] = {name.data(), nullptr};
  ::execv(program_.c_str(), arguments);
  std::perror("The program could not be started again");
}

}  // namespace platform
