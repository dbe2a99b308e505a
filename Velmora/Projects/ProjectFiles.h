#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "Velmora/Projects/ProjectSummary.h"
#include "VelmoraCore/Song/Song.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// The projects on the disk: one folder a project below a root, named by the project's id in upper case, with
/// the document "song.json" and the folder "audio"; and beside them "current.txt" with the id of the project
/// to open.
///
/// Every call reads the disk anew and blocks. Besides what is told at each, all throw `platform::FileError`.
class ProjectFiles {
 public:
  /// The root is created when something is first written.
  explicit ProjectFiles(std::filesystem::path root);

  /// "Velmora/Projects" in the user's application support folder.
  static std::filesystem::path defaultRoot();

  const std::filesystem::path& root() const { return root_; }

  /// Writes the document whole; when it throws, the disk is as it was. Throws `InvalidProject` for a document
  /// that breaks a rule or is too long.
  void save(const Song& song) const;

  /// Throws `InvalidProject` for a document that is too long, breaks a rule or is another project's, and
  /// `DecodingError`.
  Song load(const UUID& id) const;

  void setCurrentProject(const UUID& id) const;

  /// Empty if nothing, or nothing sensible, was stored.
  std::optional<UUID> currentProjectID() const;

  /// All projects, newest first. What can't be read is listed as unreadable, so that it can be deleted.
  std::vector<ProjectSummary> listProjects() const;

  void deleteProject(const UUID& id) const;

  /// The project's folder of audio files, which is created if it isn't there.
  std::filesystem::path audioFolder(const UUID& id) const;

  /// Copies a file into the project's audio folder under a fresh name; returns the copy's path.
  std::filesystem::path importAudioFile(const std::filesystem::path& source, const UUID& project) const;

 private:
  std::filesystem::path projectFolder(const UUID& id) const;
  std::filesystem::path document(const UUID& id) const;
  std::filesystem::path currentFile() const;
  ProjectSummary summary(const UUID& id) const;

  std::filesystem::path root_;
};

}  // namespace velmora
