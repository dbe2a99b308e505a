#include "Platform/Files/AtomicFile.h"

#include <stdio.h>
#include <sys/file.h>

#include "Platform/Files/RandomName.h"

namespace platform {
namespace {

constexpr std::string_view suffix = ".tmp";

std::string prefixOf(std::string_view stem) { return std::string(".").append(stem).append("."); }

bool isHiddenName(std::string_view name, std::string_view prefix) {
  return name.size() == prefix.size() + randomNameLength + suffix.size() && name.starts_with(prefix) &&
         name.ends_with(suffix);
}

}  // namespace

AtomicFile::AtomicFile(std::filesystem::path target, std::string_view stem)
    : target_(std::move(target)), targetName_(target_.filename().string()) {
  folder_ = FileDescriptor(::open(folderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  require(static_cast<bool>(folder_));
  sweep(stem);
  create(stem);
}

AtomicFile::~AtomicFile() {
  if (!hiddenName_.empty()) ::unlinkat(folder_.number(), hiddenName_.c_str(), 0);
}

void AtomicFile::append(const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(file_.number(), bytes, count);
    if (written < 0 && errno == EINTR) continue;
    require(written >= 0);
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
}

void AtomicFile::commit() {
  requireZero(file_.sync());
  const Placement placement = takePlace();
  try {
    requireZero(folder_.sync());
    requireZero(file_.close());
  } catch (const FileError&) {
    giveBack(placement);
    throw;
  }
}

// Best effort: a leftover that can't be looked at costs nothing but its space.
void AtomicFile::sweep(std::string_view stem) const {
  const std::string prefix = prefixOf(stem);
  std::error_code ignored;
  std::filesystem::directory_iterator entry(folderOf(target_), ignored);
  for (; entry != std::filesystem::directory_iterator(); entry.increment(ignored)) {
    const std::string name = entry->path().filename().string();
    if (!isHiddenName(name, prefix)) continue;
    const int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY;
    const FileDescriptor leftover(::openat(folder_.number(), name.c_str(), flags));
    const bool isAbandoned = leftover && ::flock(leftover.number(), LOCK_EX | LOCK_NB) == 0;
    if (isAbandoned) ::unlinkat(folder_.number(), name.c_str(), 0);
  }
}

// Another process' sweep can come between the creation and the lock: a file that lost its name is made anew.
void AtomicFile::create(std::string_view stem) {
  struct stat status {};
  do {
    std::string name = prefixOf(stem).append(randomName()).append(suffix);
    file_ = FileDescriptor(
        ::openat(folder_.number(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    require(static_cast<bool>(file_));
    hiddenName_ = std::move(name);
    while (::flock(file_.number(), LOCK_EX) != 0 && errno == EINTR) continue;
  } while (::fstat(file_.number(), &status) == 0 && status.st_nlink == 0);
}

// The exchange keeps the old file under the hidden name until the new one is safe. File systems that can't
// exchange get the plain rename, after which there is no way back.
AtomicFile::Placement AtomicFile::takePlace() {
  const int folder = folder_.number();
  struct stat old {};
  const bool isReplacing = ::fstatat(folder, targetName_.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0;
  require(isReplacing || errno == ENOENT);
  if (isReplacing) {
    if (S_ISDIR(old.st_mode)) throw FileError(target_, EISDIR);
    if (S_ISREG(old.st_mode)) ::fchmod(file_.number(), old.st_mode & 0777);
    if (::renameat2(folder, hiddenName_.c_str(), folder, targetName_.c_str(), RENAME_EXCHANGE) == 0)
      return Placement::exchanged;
    require(errno == EINVAL || errno == ENOSYS);
  }
  require(::renameat(folder, hiddenName_.c_str(), folder, targetName_.c_str()) == 0);
  hiddenName_.clear();
  return isReplacing ? Placement::renamedOver : Placement::renamed;
}

void AtomicFile::giveBack(Placement placement) noexcept {
  const int folder = folder_.number();
  if (placement == Placement::exchanged)
    ::renameat2(folder, hiddenName_.c_str(), folder, targetName_.c_str(), RENAME_EXCHANGE);
  if (placement == Placement::renamed) ::unlinkat(folder, targetName_.c_str(), 0);
}

void AtomicFile::require(bool isDone) const {
  if (!isDone) throw FileError(target_, errno);
}

void AtomicFile::requireZero(int code) const {
  if (code != 0) throw FileError(target_, code);
}

}  // namespace platform
