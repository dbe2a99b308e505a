#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// A document that can't be read; `what` is one line that says why and where.
struct DecodingError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The document as pretty-printed UTF-8 JSON with sorted keys; numbers in the shortest form that reads back.
std::string encodeSong(const Song& song);

/// Reads a document. Nothing is clamped or defaulted but a note's missing id, which becomes a fresh one.
/// Throws `DecodingError`.
Song decodeSong(std::string_view text);

}  // namespace velmora
