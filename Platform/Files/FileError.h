#pragma once

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace platform {

/// A failed file operation; `what` is one line, the file's last component and the reason in words:
/// "song.json: No space left on device".
class FileError : public std::runtime_error {
 public:
  /// A refusal of the system, told in the system's words.
  FileError(const std::filesystem::path& path, int code)
      : std::runtime_error(line(path, std::generic_category().message(code))), code_(code) {}

  /// A refusal of our own or of a library.
  FileError(const std::filesystem::path& path, std::string_view reason)
      : std::runtime_error(line(path, reason)) {}

  /// The system's error number; 0 if the system refused nothing.
  int code() const noexcept { return code_; }

 private:
  static std::string line(const std::filesystem::path& path, std::string_view reason) {
    const bool endsInSlash = !path.has_filename() && path.has_relative_path();
    std::string name = (endsInSlash ? path.parent_path() : path).filename().string();
    if (name.empty()) name = path.string();
    name.append(": ").append(reason);
    std::ranges::replace_if(
        name, [](unsigned char c) { return c < 0x20 || c == 0x7F; }, '?');
    return name;
  }

  int code_ = 0;
};

}  // namespace platform
