#include "Velmora/Projects/ProjectFiles.h"

#include <QList>
#include <QString>
#include <algorithm>
#include <exception>
#include <functional>
#include <string>
#include <utility>

#include "Platform/Files/FileError.h"
#include "Platform/Files/Files.h"
#include "Platform/Files/Folders.h"
#include "VelmoraCore/Song/Limits.h"
#include "VelmoraCore/Song/SongJSON.h"
#include "VelmoraCore/Song/SongValidation.h"

namespace velmora {
namespace {

constexpr std::size_t uuidLength = 36;
constexpr std::size_t longestExtension = 10;
constexpr const char* defaultExtension = "caf";

void requireLength(std::uintmax_t bytes) {
  if (bytes > limits::longestDocumentBytes) throw InvalidProject();
}

/// The extension in lower case; "caf" if it isn't a plain short word.
std::string importedExtension(const std::filesystem::path& source) {
  const std::string dotted = source.extension().string();
  const QString extension = QString::fromStdString(dotted).mid(1).toLower();
  const QList<uint> characters = extension.toUcs4();
  const auto isLetterOrDigit = [](uint character) { return QChar::isLetterOrNumber(character); };
  const bool isWord = !characters.empty() && std::cmp_less_equal(characters.size(), longestExtension) &&
                      std::ranges::all_of(characters, isLetterOrDigit);
  return isWord ? extension.toStdString() : defaultExtension;
}

}  // namespace

ProjectFiles::ProjectFiles(std::filesystem::path root) : root_(std::move(root)) {}

std::filesystem::path ProjectFiles::defaultRoot() {
  return platform::applicationSupportFolder() / "Velmora" / "Projects";
}

void ProjectFiles::save(const Song& song) const {
  validateSong(song);
  const auto created = platform::createFolders(projectFolder(song.id));
  try {
    const std::string text = encodeSong(song);
    requireLength(text.size());
    platform::atomicWrite(document(song.id), text);
  } catch (...) {
    platform::removeEmptyFolders(created);
    throw;
  }
}

Song ProjectFiles::load(const UUID& id) const {
  requireLength(platform::fileSize(document(id)));
  const std::string text = platform::readFile(document(id), limits::longestDocumentBytes);
  requireLength(text.size());
  Song song = decodeSong(text);
  if (song.id != id) throw InvalidProject();
  validateSong(song);
  return song;
}

void ProjectFiles::setCurrentProject(const UUID& id) const {
  platform::createFolders(root_);
  platform::atomicWrite(currentFile(), id.text());
}

std::optional<UUID> ProjectFiles::currentProjectID() const {
  if (!platform::fileExists(currentFile())) return {};
  return UUID::parse(platform::readFile(currentFile(), uuidLength));
}

std::vector<ProjectSummary> ProjectFiles::listProjects() const {
  std::vector<ProjectSummary> summaries;
  if (!platform::fileExists(root_)) return summaries;
  for (const std::string& name : platform::listFolder(root_))
    if (const auto id = UUID::parse(name)) summaries.push_back(summary(*id));
  std::ranges::stable_sort(summaries, std::greater(), &ProjectSummary::modified);
  return summaries;
}

ProjectSummary ProjectFiles::summary(const UUID& id) const {
  ProjectSummary result{.id = id};
  try {
    const Song song = load(id);
    result.name = song.name;
    result.trackCount = static_cast<std::int64_t>(song.tracks.size());
  } catch (const std::exception&) {
    return result;
  }
  try {
    result.modified = platform::modificationDate(document(id));
  } catch (const platform::FileError&) {
    result.modified = ProjectSummary::distantPast;
  }
  return result;
}

void ProjectFiles::deleteProject(const UUID& id) const { platform::removeTree(projectFolder(id)); }

std::filesystem::path ProjectFiles::audioFolder(const UUID& id) const {
  std::filesystem::path folder = projectFolder(id) / "audio";
  platform::createFolders(folder);
  return folder;
}

std::filesystem::path ProjectFiles::importAudioFile(const std::filesystem::path& source,
                                                    const UUID& project) const {
  const std::string extension = importedExtension(source);
  std::filesystem::path target = audioFolder(project) / (UUID::random().text() + "." + extension);
  platform::copyFile(source, target);
  return target;
}

std::filesystem::path ProjectFiles::projectFolder(const UUID& id) const { return root_ / id.text(); }
std::filesystem::path ProjectFiles::document(const UUID& id) const { return projectFolder(id) / "song.json"; }
std::filesystem::path ProjectFiles::currentFile() const { return root_ / "current.txt"; }

}  // namespace velmora
