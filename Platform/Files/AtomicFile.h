#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "Platform/Files/FileDescriptor.h"

namespace platform {

/// A file in the making: it grows under a hidden name beside its target and takes the target's place in one
/// step.
///
/// The hidden name is ".<stem>.<random>.tmp". While it grows its maker holds a lock on it, which dies with
/// the process: a leftover of a killed process is known by a lock that nobody holds, and whoever next makes a
/// file of the same stem in the same folder sweeps it away. (A process number in the name would not do:
/// numbers are reused, and two sandboxes count them apart.) Everything throws `FileError` that names the
/// target.
class AtomicFile {
 public:
  /// The stem is the target's name for files that are rewritten, a fixed word for files whose names never
  /// come again.
  AtomicFile(std::filesystem::path target, std::string_view stem);

  /// Removes what wasn't committed.
  ~AtomicFile();

  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  void append(const char* bytes, std::size_t count);

  /// Puts the file on the disk and in its place. When it throws, the old file stands.
  void commit();

 private:
  enum class Placement { renamed, renamedOver, exchanged };

  void sweep(std::string_view stem) const;
  void create(std::string_view stem);
  Placement takePlace();
  void giveBack(Placement placement) noexcept;
  void require(bool isDone) const;
  void requireZero(int code) const;

  std::filesystem::path target_;
  std::string targetName_;
  std::string hiddenName_;  // empty when nothing lies there
  FileDescriptor folder_;
  FileDescriptor file_;
};

}  // namespace platform
