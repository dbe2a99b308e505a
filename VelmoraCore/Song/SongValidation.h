#pragma once

#include <stdexcept>

#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// A document that breaks a rule.
struct InvalidProject : std::runtime_error {
  InvalidProject() : std::runtime_error("This project contains invalid or unsupported data.") {}
};

/// Checks every rule of the document, before it is written and after it is read. Throws `InvalidProject`.
void validateSong(const Song& song);

}  // namespace velmora
