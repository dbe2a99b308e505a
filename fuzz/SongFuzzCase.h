#pragma once

#include <cstdlib>
#include <string_view>

#include "VelmoraCore/Song/SongJSON.h"
#include "VelmoraCore/Song/SongValidation.h"

namespace velmora {

/// How far a text comes as a document.
enum class SongFuzzOutcome { undecodable, invalid, valid };

/// Reads a text as a document. What is valid must read back from its own encoding as the same song with the
/// same text, and still be valid; otherwise the process aborts. Errors other than the two that reading has
/// escape.
inline SongFuzzOutcome songFuzzCase(std::string_view text) {
  try {
    const Song song = decodeSong(text);
    validateSong(song);
    const std::string encoded = encodeSong(song);
    const Song again = decodeSong(encoded);
    validateSong(again);
    if (!(again == song) || encodeSong(again) != encoded) std::abort();
    return SongFuzzOutcome::valid;
  } catch (const DecodingError& error) {
    const std::string_view line = error.what();
    if (line.empty() || line.back() != '.' || line.find('\n') != std::string_view::npos) std::abort();
    return SongFuzzOutcome::undecodable;
  } catch (const InvalidProject&) {
    return SongFuzzOutcome::invalid;
  }
}

}  // namespace velmora
