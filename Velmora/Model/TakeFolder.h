#pragma once

#include <filesystem>
#include <optional>

#include "Velmora/Model/RecordingContext.h"

namespace velmora {

/// Where takes lie until a project has them: the system's temporary folder, namely the one that outlasts a
/// restart of the computer unless the environment names another. Beside each take lies a note on where it
/// belongs, by which the next process knows what a crash has left.
class TakeFolder {
 public:
  /// Only takes for the projects below `projects` are found, and those without a readable note.
  explicit TakeFolder(std::filesystem::path projects) : projects_(std::move(projects)) {}

  /// A fresh path.
  static std::filesystem::path newTake();

  /// Writes the take's note, anew if there is one. Throws `FileError`.
  void note(const RecordingContext& take) const;

  /// Removes the take, if it is there, and its note; fails only if the take stays.
  static std::error_code remove(const RecordingContext& take);

  /// The latest take of this user that lies here. What can't be known of it is left at its default.
  std::optional<RecordingContext> leftTake() const;

 private:
  std::optional<RecordingContext> readTake(const std::filesystem::path& url) const;

  std::filesystem::path projects_;
};

}  // namespace velmora
