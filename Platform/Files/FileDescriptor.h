#pragma once

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "Platform/Files/FileError.h"

namespace platform {

/// An open file that closes itself; empty at -1.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) noexcept : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~FileDescriptor() { close(); }

  int number() const noexcept { return number_; }
  explicit operator bool() const noexcept { return number_ >= 0; }

  /// Closes now; returns 0 or the error number. An interrupted close has closed all the same.
  int close() noexcept {
    const int number = std::exchange(number_, -1);
    return number < 0 || ::close(number) == 0 || errno == EINTR ? 0 : errno;
  }

  /// Waits until what was written, or a folder's names, are on the disk; returns 0 or the error number. A
  /// file system that can't sync folders at all is taken at its word.
  int sync() const noexcept {
    while (::fsync(number_) != 0) {
      if (errno == EINVAL) return 0;
      if (errno != EINTR) return errno;
    }
    return 0;
  }

 private:
  int number_ = -1;
};

/// Opens a regular file for reading. Anything else, such as a folder or a pipe, is refused without blocking.
/// Throws `FileError`.
inline FileDescriptor openForReading(const std::filesystem::path& path) {
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  if (!file || ::fstat(file.number(), &status) != 0) throw FileError(path, errno);
  if (S_ISDIR(status.st_mode)) throw FileError(path, EISDIR);
  if (!S_ISREG(status.st_mode)) throw FileError(path, "Not a regular file");
  return file;
}

/// Opens a folder, to sync it or to reach what lies in it. Throws `FileError`.
inline FileDescriptor openFolder(const std::filesystem::path& path) {
  FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder) throw FileError(path, errno);
  return folder;
}

/// The folder that a path stands in; the working directory for a bare name.
inline std::filesystem::path folderOf(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : ".";
}

}  // namespace platform
