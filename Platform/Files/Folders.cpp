#include "Platform/Files/Folders.h"

#include <cstdlib>
#include <dirent.h>
#include <memory>
#include <pwd.h>
#include <string_view>

#include "Platform/Files/FileDescriptor.h"
#include "Platform/Files/RandomName.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

bool isFolder(const fs::path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

void createMissing(const fs::path& path, std::vector<fs::path>& created) {
  if (isFolder(path)) return;
  if (folderOf(path) != path) createMissing(folderOf(path), created);
  if (::mkdir(path.c_str(), 0777) != 0) {
    const int code = errno == EEXIST ? ENOTDIR : errno;
    if (isFolder(path)) return;  // somebody else was faster
    throw FileError(path, code);
  }
  created.push_back(path);
  if (const int code = openFolder(folderOf(path)).sync()) throw FileError(path, code);
}

/// An absolute path from the environment; empty if there is none.
fs::path absoluteFromEnvironment(const char* variable) {
  const char* value = std::getenv(variable);
  return value && value[0] == '/' ? fs::path(value) : fs::path();
}

fs::path homeFolder() {
  fs::path home = absoluteFromEnvironment("HOME");
  if (!home.empty()) return home;
  const passwd* user = ::getpwuid(::getuid());
  return user ? user->pw_dir : "/";
}

}  // namespace

std::vector<fs::path> createFolders(const fs::path& path) {
  std::vector<fs::path> created;
  try {
    createMissing(path.has_filename() ? path : path.parent_path(), created);
  } catch (const FileError&) {
    removeEmptyFolders(created);
    throw;
  }
  return created;
}

void removeEmptyFolders(const std::vector<fs::path>& outermostFirst) noexcept {
  for (auto folder = outermostFirst.rbegin(); folder != outermostFirst.rend(); ++folder)
    ::rmdir(folder->c_str());
}

std::vector<std::string> listFolder(const fs::path& path) {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(path.c_str()), &::closedir);
  if (!folder) throw FileError(path, errno);
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* entry = ::readdir(folder.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
    errno = 0;
  }
  if (errno != 0) throw FileError(path, errno);
  return names;
}

void removeTree(const fs::path& path) {
  try {
    if (fs::remove_all(path) == 0) throw FileError(path, ENOENT);
  } catch (const fs::filesystem_error& error) {
    throw FileError(error.path1().empty() ? path : error.path1(), error.code().value());
  }
}

fs::path applicationSupportFolder() {
  const fs::path folder = absoluteFromEnvironment("XDG_DATA_HOME");
  return folder.empty() ? homeFolder() / ".local/share" : folder;
}

fs::path lastingTemporaryFolder() {
  const fs::path lasting = "/var/tmp";
  const bool isChosen = std::getenv("TMPDIR");
  return !isChosen && ::access(lasting.c_str(), W_OK | X_OK) == 0 ? lasting : fs::temp_directory_path();
}

fs::path temporaryFile(const std::string& extension) {
  std::error_code code;
  const fs::path folder = fs::temp_directory_path(code);
  return (code ? fs::path("/tmp") : folder) / (randomName() + "." + extension);
}

}  // namespace platform
