#pragma once

#include <QSizeF>
#include <vector>

#include "Keyboard/KeyRectInfo.h"
#include "Keyboard/PianoSpacer.h"

namespace keyboard {

/// How the keys lie; a horizontal piano is the one way.
struct KeyboardLayout {
  PianoSpacer piano;

  /// The keys that exist: those asked for and the white ones that bound them.
  PitchRange shownRange() const { return piano.pitchRange.boundedByNaturals(); }
  int indexOf(tonic::Pitch pitch) const { return pitch.intValue() - shownRange().lowerBound().intValue(); }
  std::vector<KeyRectInfo> keyRectInfos(QSizeF size) const { return piano.keyRectInfos(size); }

  bool operator==(const KeyboardLayout&) const = default;
};

}  // namespace keyboard
