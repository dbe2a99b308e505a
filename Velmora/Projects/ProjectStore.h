#pragma once

#include <QCoroTask>
#include <filesystem>
#include <optional>
#include <vector>

#include "Platform/Tasks/SerialWorker.h"
#include "Velmora/Projects/ProjectFiles.h"
#include "Velmora/Projects/ProjectSummary.h"
#include "VelmoraCore/Song/Song.h"
#include "VelmoraCore/Song/SongValidation.h"

namespace velmora {

/// The projects on the disk, for callers that must not block: `ProjectFiles` on a worker of its own.
///
/// Operations run one at a time in the order of the calls, whether their tasks are awaited or not; the
/// store's destruction waits for those that are issued. A task ends with the value or with the error of
/// `ProjectFiles`.
class ProjectStore {
 public:
  /// A document that can't be a project; all other errors are the file system's and the decoder's.
  using StoreError = InvalidProject;

  explicit ProjectStore(std::filesystem::path root = ProjectFiles::defaultRoot());

  const std::filesystem::path& root() const { return files_.root(); }

  QCoro::Task<> save(Song song);
  QCoro::Task<Song> load(UUID id);
  QCoro::Task<> setCurrentProject(UUID id);
  QCoro::Task<std::optional<UUID>> currentProjectID();
  QCoro::Task<std::vector<ProjectSummary>> listProjects();
  QCoro::Task<> deleteProject(UUID id);
  QCoro::Task<std::filesystem::path> audioFolder(UUID id);
  QCoro::Task<std::filesystem::path> importAudioFile(std::filesystem::path source, UUID project);

 private:
  ProjectFiles files_;
  platform::SerialWorker worker_;
};

}  // namespace velmora
