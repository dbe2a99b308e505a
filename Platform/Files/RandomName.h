#pragma once

#include <cstddef>
#include <string>

namespace platform {

inline constexpr std::size_t randomNameLength = 36;

/// A file name that nothing else has: a version 4 UUID in upper case.
std::string randomName();

}  // namespace platform
