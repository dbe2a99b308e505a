#include "tests/Velmora/Projects/FaultInjection.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace velmora::testing {
namespace {

Fault armed;
int calls = 0;
const char* failed = nullptr;
bool areSizesHidden = false;

bool isDue() {
  if (armed.number == 0) return false;
  ++calls;
  return armed.kind == Fault::Kind::fromThenOn ? calls >= armed.number : calls == armed.number;
}

template <class... Arguments>
int attempt(const char* name, long call, Arguments... arguments) {
  if (!isDue()) return static_cast<int>(::syscall(call, arguments...));
  if (armed.kind == Fault::Kind::kill) ::raise(SIGKILL);
  if (!failed) failed = name;
  if (call == SYS_close) ::syscall(call, arguments...);  // a close that fails has closed all the same
  errno = armed.error;
  return -1;
}

}  // namespace

void arm(const Fault& fault) { armed = fault; }

void hideSizes(bool areHidden) { areSizesHidden = areHidden; }

std::string failedCall() { return failed ? failed : ""; }

}  // namespace velmora::testing

// The program's own definitions stand before those of the C library.
using velmora::testing::areSizesHidden;
using velmora::testing::attempt;

extern "C" {

int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return attempt("open", SYS_openat, AT_FDCWD, path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return attempt(flags & O_CREAT ? "create" : "open", SYS_openat, folder, path, flags, mode);
}

ssize_t write(int file, const void* bytes, size_t count) {
  return attempt("write", SYS_write, file, bytes, count);
}
int stat(const char* path, struct stat* status) noexcept {
  const int result = ::fstatat(AT_FDCWD, path, status, 0);
  if (areSizesHidden) status->st_size = 0;
  return result;
}
int fsync(int file) { return attempt("fsync", SYS_fsync, file); }
int close(int file) { return attempt("close", SYS_close, file); }
int mkdir(const char* path, mode_t mode) noexcept {
  return attempt("mkdir", SYS_mkdirat, AT_FDCWD, path, mode);
}
int rmdir(const char* path) noexcept { return attempt("rmdir", SYS_unlinkat, AT_FDCWD, path, AT_REMOVEDIR); }
int unlinkat(int folder, const char* path, int flags) noexcept {
  return attempt("unlink", SYS_unlinkat, folder, path, flags);
}
int renameat(int from, const char* old, int to, const char* path) noexcept {
  return attempt("rename", SYS_renameat2, from, old, to, path, 0U);
}
int renameat2(int from, const char* old, int to, const char* path, unsigned flags) noexcept {
  return attempt("rename", SYS_renameat2, from, old, to, path, flags);
}
int flock(int file, int operation) noexcept { return attempt("flock", SYS_flock, file, operation); }
int fchmod(int file, mode_t mode) noexcept { return attempt("fchmod", SYS_fchmod, file, mode); }

}  // extern "C"
