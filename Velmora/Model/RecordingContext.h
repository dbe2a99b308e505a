#pragma once

#include <filesystem>
#include <optional>

#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// A take: where its file lies and where it belongs in the song.
struct RecordingContext {
  std::filesystem::path url;
  UUID trackID;
  double beat = 0;                     ///< where the take starts
  std::optional<UUID> importedClipID;  ///< the clip that the take became, once it is in the song

  bool operator==(const RecordingContext&) const = default;
};

}  // namespace velmora
