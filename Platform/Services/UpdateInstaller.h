#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <filesystem>
#include <optional>
#include <sys/stat.h>

#include "Platform/Files/AtomicFile.h"

namespace platform {

/// Puts a new version in the place of the program's own file, where the program is a single self-contained
/// file that the user may write.
///
/// The new version grows under a hidden name beside the old one. At every moment, a kill or a power cut
/// included, a whole program stands under the program's name; the one before it is kept as "<name>.old". An
/// update that wasn't installed goes with the installer, or after a kill at the next start. One thread at a
/// time; everything throws `FileError` unless told otherwise.
class UpdateInstaller {
 public:
  /// Empty for a program that was installed by a package.
  explicit UpdateInstaller(std::filesystem::path program = runningImage()) : program_(std::move(program)) {}

  /// The file that the running program was mounted from; empty if it runs from files that were installed.
  static std::filesystem::path runningImage();

  /// Whether the program can replace itself where it is. Clears up after a killed process.
  bool canInstall() const noexcept;

  /// Starts anew with a file of this size and SHA-256.
  void begin(qint64 size, QByteArray hash);
  void append(const QByteArray& bytes);
  /// From here on the update is ready, if it is whole and right.
  void complete();
  void discard() noexcept;
  bool isReady() const noexcept { return isReady_; }

  /// Replaces the program by the update that is ready; whatever fails, the old program stays.
  void install();

  /// Whether `finish` starts the program again.
  void setRelaunches(bool relaunches) noexcept { relaunches_ = relaunches; }

  /// The last thing that the process does: installs what is ready, and starts the program again in the place
  /// of this process if that was asked for. A failure is told on the standard error.
  void finish() noexcept;

 private:
  struct stat statusOfProgram() const;
  void keepAs(const std::filesystem::path& old) const;
  void relaunch() const noexcept;

  const std::filesystem::path program_;
  std::optional<AtomicFile> file_;  // the new version
  struct stat replaced_ {};         // the program for which it was got
  QCryptographicHash sum_{QCryptographicHash::Sha256};
  QByteArray hash_;
  qint64 missing_ = 0;  // bytes
  bool isReady_ = false;
  bool relaunches_ = false;
};

}  // namespace platform
