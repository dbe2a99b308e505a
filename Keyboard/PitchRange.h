#pragma once

#include "Tonic/Pitch.h"

namespace keyboard {

/// All pitches from the lower to the upper bound, both included.
class PitchRange {
 public:
  /// An upper bound below the lower is a programming error and ends the process.
  PitchRange(tonic::Pitch lowerBound, tonic::Pitch upperBound);

  /// 25 keys upwards from a pitch, fewer at the ends of the MIDI range.
  static PitchRange twoOctavesFrom(int lowerPitch);

  /// Widened to white keys at both ends.
  PitchRange boundedByNaturals() const;

  tonic::Pitch lowerBound() const { return lowerBound_; }
  tonic::Pitch upperBound() const { return upperBound_; }
  int count() const { return upperBound_.intValue() - lowerBound_.intValue() + 1; }
  bool contains(tonic::Pitch pitch) const { return lowerBound_ <= pitch && pitch <= upperBound_; }
  tonic::Pitch clamped(int pitch) const;

  bool operator==(const PitchRange&) const = default;

 private:
  tonic::Pitch lowerBound_;
  tonic::Pitch upperBound_;
};

}  // namespace keyboard
