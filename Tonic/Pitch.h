#pragma once

#include <compare>
#include <cstdint>

namespace tonic {

/// A MIDI note number; 60 is the middle C, and keyboards use 0 to 127.
struct Pitch {
  std::int8_t midiNoteNumber = 0;

  Pitch() = default;
  constexpr explicit Pitch(int number) : midiNoteNumber(static_cast<std::int8_t>(number)) {}

  constexpr int intValue() const { return midiNoteNumber; }

  /// Semitones above the C below or at it, 0 to 11.
  constexpr int pitchClass() const { return ((midiNoteNumber % 12) + 12) % 12; }

  auto operator<=>(const Pitch&) const = default;  // NOLINT(modernize-use-nullptr): taken for a pointer
};

}  // namespace tonic
