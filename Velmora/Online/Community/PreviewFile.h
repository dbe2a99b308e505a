#pragma once

#include <filesystem>

namespace velmora {

/// An empty WAV file in the system's temporary directory that this user alone may read; it goes with its
/// object.
class PreviewFile {
 public:
  /// Throws `platform::FileError`.
  PreviewFile();
  ~PreviewFile();
  PreviewFile(const PreviewFile&) = delete;
  PreviewFile& operator=(const PreviewFile&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace velmora
