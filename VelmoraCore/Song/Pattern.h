#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "VelmoraCore/Song/DrumSound.h"
#include "VelmoraCore/Song/SharedList.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

inline constexpr double stepLengthBeats = 0.25;
inline constexpr double newPatternLengthBeats = 4;

/// One note of a pattern, in beats from the pattern's start.
struct Note {
  UUID id;  ///< unique within its pattern only
  std::uint8_t pitch = 0;
  double startBeat = 0;
  double durationBeats = 0;
  std::uint8_t velocity = 0;

  bool operator==(const Note&) const = default;
};

/// The changes that `Pattern::editNote` makes; what is empty stays.
struct NoteEdit {
  std::optional<int> pitch{};
  std::optional<double> startBeat{};
  std::optional<double> durationBeats{};
  std::optional<int> velocity{};
};

/// A reusable block of notes that belongs to exactly one track.
///
/// Edits are silent: unusable arguments leave the pattern as it was, values out of range are clamped.
struct Pattern {
  UUID id{};
  UUID trackID{};
  std::string name{};
  double lengthBeats = newPatternLengthBeats;
  SharedList<Note> notes{};  ///< not kept sorted

  bool operator==(const Pattern&) const = default;

  /// Adds a note whose start is rounded down to the grid; returns its id.
  std::optional<UUID> insertNote(int pitch, int velocity, double startBeat, double durationBeats,
                                 double gridBeats);

  /// Changes a note; a given start is rounded to the nearest grid line. A move keeps the note whole inside
  /// the pattern, a resize may shorten it at the end.
  void editNote(const UUID& noteID, const NoteEdit& edit, double gridBeats);

  void removeNote(const UUID& noteID);

  /// The number of steps, the last of which may be shorter than `stepLengthBeats`.
  int stepCount() const;

  /// The loudest velocity in a cell of the step grid; empty for an empty cell or no cell.
  std::optional<std::uint8_t> stepVelocity(DrumSound sound, int step) const;

  /// Empties a filled cell, fills an empty one with one note.
  void toggleStep(DrumSound sound, int step, int velocity);

  /// Sets the velocity of all notes of a cell.
  void setStepVelocity(DrumSound sound, int step, int velocity);
};

}  // namespace velmora
