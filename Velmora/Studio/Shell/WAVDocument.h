#pragma once

#include <filesystem>
#include <string>

namespace velmora {

/// A rendered song in a temporary file, offered to be kept.
struct WAVDocument {
  std::filesystem::path url;

  /// The name to offer for a song: its own with ".wav", as far as a file may be called so.
  static std::filesystem::path fileName(const std::string& songName);

  /// Where a file that the user named goes: ".wav" is added where it is missing.
  static std::filesystem::path target(std::filesystem::path chosen);
};

}  // namespace velmora
