#include "Velmora/Studio/Parts/TrackSymbol.h"

namespace velmora {

QString TrackSymbol::name(TrackKind kind) {
  switch (kind.family()) {
    case TrackFamily::drums:
      return "circle.grid.3x3.fill";
    case TrackFamily::audio:
      return "waveform";
    case TrackFamily::synth:
      break;
  }
  return "pianokeys";
}

QString TrackSymbol::word(TrackKind kind) {
  if (kind.isDrums()) return "Drums";
  if (kind.isAudio()) return "Audio";
  const std::string_view word = label(*kind.preset());
  return QString::fromUtf8(word.data(), static_cast<qsizetype>(word.size()));
}

}  // namespace velmora
