#pragma once

#include <string>

#include "Tonic/NoteClass.h"
#include "Tonic/Pitch.h"

namespace tonic {

/// A pitch as it is spelled in C major; what is no natural there takes a sharp.
struct Note {
  NoteClass noteClass{};
  int octave = 3;  ///< the octave of the middle C is 3

  Note() = default;
  explicit Note(Pitch pitch);

  /// The class and the octave in decimal, as "C3".
  std::string text() const;

  bool operator==(const Note&) const = default;
};

/// Whether the pitch is a white key.
inline bool isNatural(Pitch pitch) { return Note(pitch).noteClass.isNatural(); }

}  // namespace tonic
