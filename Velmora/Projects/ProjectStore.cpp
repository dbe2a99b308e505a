#include "Velmora/Projects/ProjectStore.h"

#include <utility>

namespace velmora {

// `files_` never changes and outlives the worker, so the work reads it in place.

ProjectStore::ProjectStore(std::filesystem::path root) : files_(std::move(root)) {}

QCoro::Task<> ProjectStore::save(Song song) {
  return worker_.run([this, song = std::move(song)] { files_.save(song); });
}

QCoro::Task<Song> ProjectStore::load(UUID id) {
  return worker_.run([this, id] { return files_.load(id); });
}

QCoro::Task<> ProjectStore::setCurrentProject(UUID id) {
  return worker_.run([this, id] { files_.setCurrentProject(id); });
}

QCoro::Task<std::optional<UUID>> ProjectStore::currentProjectID() {
  return worker_.run([this] { return files_.currentProjectID(); });
}

QCoro::Task<std::vector<ProjectSummary>> ProjectStore::listProjects() {
  return worker_.run([this] { return files_.listProjects(); });
}

QCoro::Task<> ProjectStore::deleteProject(UUID id) {
  return worker_.run([this, id] { files_.deleteProject(id); });
}

QCoro::Task<std::filesystem::path> ProjectStore::audioFolder(UUID id) {
  return worker_.run([this, id] { return files_.audioFolder(id); });
}

QCoro::Task<std::filesystem::path> ProjectStore::importAudioFile(std::filesystem::path source, UUID project) {
  return worker_.run(
      [this, source = std::move(source), project] { return files_.importAudioFile(source, project); });
}

}  // namespace velmora
