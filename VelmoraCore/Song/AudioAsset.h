#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// One audio file of the project; the file itself lies in the project's "audio" folder.
struct AudioAsset {
  std::optional<std::string> name;  ///< empty means that the file name is shown
  UUID id;
  std::string fileName;  ///< a bare file name
  double sampleRate = 0;
  std::int64_t frameCount = 0;
  std::int64_t channelCount = 0;

  bool operator==(const AudioAsset&) const = default;
};

}  // namespace velmora
