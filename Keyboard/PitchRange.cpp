#include "Keyboard/PitchRange.h"

#include <QtGlobal>
#include <algorithm>

#include "Tonic/Note.h"

namespace keyboard {

using tonic::Pitch;

PitchRange::PitchRange(Pitch lowerBound, Pitch upperBound)
    : lowerBound_(lowerBound), upperBound_(upperBound) {
  if (upperBound < lowerBound) {
    qFatal("The pitches end at %d, below their start at %d.", upperBound.intValue(), lowerBound.intValue());
  }
}

PitchRange PitchRange::twoOctavesFrom(int lowerPitch) {
  const int lower = std::clamp(lowerPitch, 0, 127);
  const int upper = std::clamp(std::min(lowerPitch, 127) + 24, 0, 127);
  return {Pitch(lower), Pitch(upper)};
}

PitchRange PitchRange::boundedByNaturals() const {
  const int below = isNatural(lowerBound_) ? 0 : 1;
  const int above = isNatural(upperBound_) ? 0 : 1;
  return {Pitch(lowerBound_.intValue() - below), Pitch(upperBound_.intValue() + above)};
}

Pitch PitchRange::clamped(int pitch) const {
  return Pitch(std::clamp(pitch, lowerBound_.intValue(), upperBound_.intValue()));
}

}  // namespace keyboard
