#pragma once

#include <cstdint>
#include <string>

#include "Platform/Files/Files.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// One row of the project library; `id` is its identity.
struct ProjectSummary {
  static constexpr platform::FileTime distantPast = platform::FileTime::min();

  UUID id;
  std::string name = "Unreadable project";
  platform::FileTime modified = distantPast;  ///< of the document
  std::int64_t trackCount = 0;

  bool operator==(const ProjectSummary&) const = default;
};

}  // namespace velmora
