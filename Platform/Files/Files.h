#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace platform {

/// A moment of a file's history. Moments that microseconds can't count stand at the nearest one that they
/// can.
using FileTime = std::chrono::sys_time<std::chrono::microseconds>;

// Everything here throws `FileError` and follows links as the system does, unless told otherwise.

/// Whether something is there; a dangling link is nothing.
bool fileExists(const std::filesystem::path& path);

/// Whether a regular file of this user's is there, not a link to one.
bool isOwnFile(const std::filesystem::path& path) noexcept;

/// The size in bytes.
std::uintmax_t fileSize(const std::filesystem::path& path);

FileTime modificationDate(const std::filesystem::path& path);

/// The content of a regular file, but never more than `limit` + 1 bytes of it: a longer result than `limit`
/// tells that the file is too long.
std::string readFile(const std::filesystem::path& path, std::size_t limit);

/// Replaces the file's content: a reader, or a crash at any moment, sees the old or the new content whole.
/// When it returns, the new content is on the disk; when it throws, the old file stands.
void atomicWrite(const std::filesystem::path& path, std::string_view bytes);

/// Copies the content of a regular file: the target appears whole and is on the disk, or is left as it was.
void copyFile(const std::filesystem::path& source, const std::filesystem::path& target);

}  // namespace platform
