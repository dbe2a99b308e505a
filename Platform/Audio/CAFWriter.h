#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

#include "Platform/Files/FileDescriptor.h"

namespace platform {

/// A Core Audio Format file in the making: mono, 32-bit floats, little-endian. It can be opened at any time,
/// even if its maker was killed or the power failed: it then has the frames up to the last `sync`.
///
/// Blocks on disk; throws `FileError`. After the chunk of samples nothing follows, so that nothing has to be
/// completed at the end.
class CAFWriter {
 public:
  /// Creates the file, readable by its user alone, with no frames. The rate is in Hz.
  CAFWriter(const std::filesystem::path& path, int sampleRate);

  /// When it throws, as on a full disk, what could be written stays for the next `sync`.
  void append(std::span<const float> samples);

  /// Puts all frames so far on the disk, and only then their number.
  void sync();

 private:
  void writeSize();
  void require(bool isDone) const;
  void flush() const;

  std::filesystem::path path_;
  FileDescriptor file_;
  std::int64_t byteCount_ = 0;  // of samples
};

}  // namespace platform
