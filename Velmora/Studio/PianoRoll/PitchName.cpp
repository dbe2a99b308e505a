#include "Velmora/Studio/PianoRoll/PitchName.h"

#include "Tonic/Note.h"

namespace velmora {

QString pitchName(int pitch) {
  const tonic::Note note{tonic::Pitch(pitch)};
  return QString::fromStdString(note.noteClass.text()) + QString::number(pitch / 12 - 1);
}

bool isBlackKey(int pitch) { return !tonic::isNatural(tonic::Pitch(pitch)); }

}  // namespace velmora
