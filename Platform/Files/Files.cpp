#include "Platform/Files/Files.h"

#include <algorithm>
#include <vector>

#include "Platform/Files/AtomicFile.h"

namespace platform {
namespace {

constexpr std::size_t blockBytes = 1 << 18;

struct stat statusOf(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) throw FileError(path, errno);
  return status;
}

/// Reads until the buffer is full or the file ends; returns the bytes read.
std::size_t readUpTo(const FileDescriptor& file, char* buffer, std::size_t count,
                     const std::filesystem::path& path) {
  std::size_t total = 0;
  while (total < count) {
    const ssize_t read = ::read(file.number(), buffer + total, count - total);
    if (read < 0 && errno == EINTR) continue;
    if (read < 0) throw FileError(path, errno);
    if (read == 0) break;
    total += static_cast<std::size_t>(read);
  }
  return total;
}

FileTime fileTime(const timespec& time) {
  using std::chrono::seconds;
  constexpr std::int64_t furthest = std::chrono::floor<seconds>(FileTime::duration::max()).count() - 1;
  const std::int64_t whole = std::clamp<std::int64_t>(time.tv_sec, -furthest, furthest);
  return FileTime(seconds(whole) + std::chrono::microseconds(time.tv_nsec / 1000));
}

}  // namespace

bool fileExists(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) return true;
  if (errno == ENOENT || errno == ENOTDIR) return false;
  throw FileError(path, errno);
}

bool isOwnFile(const std::filesystem::path& path) noexcept {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == ::geteuid();
}

std::uintmax_t fileSize(const std::filesystem::path& path) {
  return static_cast<std::uintmax_t>(statusOf(path).st_size);
}

FileTime modificationDate(const std::filesystem::path& path) { return fileTime(statusOf(path).st_mtim); }

std::string readFile(const std::filesystem::path& path, std::size_t limit) {
  const FileDescriptor file = openForReading(path);
  std::string bytes;
  bytes.reserve(std::min<std::uintmax_t>(limit, fileSize(path)) + 1);
  while (bytes.size() <= limit) {
    const std::size_t start = bytes.size();
    const std::size_t wanted = std::min(blockBytes, limit + 1 - start);
    bytes.resize(start + wanted);
    const std::size_t count = readUpTo(file, bytes.data() + start, wanted, path);
    bytes.resize(start + count);
    if (count < wanted) break;
  }
  return bytes;
}

void atomicWrite(const std::filesystem::path& path, std::string_view bytes) {
  AtomicFile file(path, path.filename().string());
  file.append(bytes.data(), bytes.size());
  file.commit();
}

void copyFile(const std::filesystem::path& source, const std::filesystem::path& target) {
  const FileDescriptor from = openForReading(source);
  AtomicFile to(target, "copy");
  std::vector<char> block(blockBytes);
  while (const std::size_t count = readUpTo(from, block.data(), block.size(), source))
    to.append(block.data(), count);
  to.commit();
}

}  // namespace platform
