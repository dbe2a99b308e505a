#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace platform {

/// Creates a folder with all missing parents and puts their names on the disk; an existing folder is fine.
/// Returns the folders that it made, outermost first; when it throws `FileError`, it has made none.
std::vector<std::filesystem::path> createFolders(const std::filesystem::path& path);

/// Takes back what `createFolders` made, as far as it is empty.
void removeEmptyFolders(const std::vector<std::filesystem::path>& outermostFirst) noexcept;

/// The names in a folder in the file system's order, hidden ones included. Throws `FileError`.
std::vector<std::string> listFolder(const std::filesystem::path& path);

/// Removes a folder with all its content, or a file; links are removed and not followed. Throws `FileError`,
/// also if there is nothing to remove.
void removeTree(const std::filesystem::path& path);

/// Where the user's data of all applications lie: $XDG_DATA_HOME, or ~/.local/share if that isn't an absolute
/// path.
std::filesystem::path applicationSupportFolder();

/// The temporary directory that outlasts a restart of the computer where there is one, unless the environment
/// chose another.
std::filesystem::path lastingTemporaryFolder();

/// A fresh path in the system's temporary directory; nothing is created there.
std::filesystem::path temporaryFile(const std::string& extension);

}  // namespace platform
