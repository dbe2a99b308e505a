#pragma once

#include <cstdint>

class QKeyEvent;

namespace velmora {

/// What a key of the computer does in the piano roll, and by how much.
struct PianoRollKey {
  enum class Act : std::uint8_t {
    moveCursor,
    changeOctave,
    moveNote,
    resizeNote,
    changeVelocity,
    removeNote,
    activate,  ///< selects the note at the cursor or adds one
  };

  Act act = Act::moveCursor;
  int steps = 0;      ///< to the right, in quarter beats; or up, in octaves or velocity
  int semitones = 0;  ///< up

  /// Null for a key that isn't the piano roll's.
  static const PianoRollKey* of(const QKeyEvent& event);
};

}  // namespace velmora
