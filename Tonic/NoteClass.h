#pragma once

#include <cstdint>
#include <string>

namespace tonic {

// NOLINTNEXTLINE(readability-identifier-naming): the letters are their names
enum class Letter : std::uint8_t { C, D, E, F, G, A, B };

enum class Accidental : std::uint8_t { doubleFlat, flat, natural, sharp, doubleSharp };

/// The name of a note without its octave.
struct NoteClass {
  Letter letter = Letter::C;
  Accidental accidental = Accidental::natural;

  constexpr bool isNatural() const { return accidental == Accidental::natural; }

  /// The letter and the accidental's sign in UTF-8; a natural has no sign.
  std::string text() const;

  bool operator==(const NoteClass&) const = default;
};

}  // namespace tonic
