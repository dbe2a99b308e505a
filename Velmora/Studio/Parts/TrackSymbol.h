#pragma once

#include <QString>

#include "VelmoraCore/Song/TrackKind.h"

namespace velmora {

/// The symbol and the word by which every view shows what a track plays.
struct TrackSymbol {
  /// "circle.grid.3x3.fill", "pianokeys" or "waveform".
  static QString name(TrackKind kind);
  /// "Drums", "Audio" or the preset's label.
  static QString word(TrackKind kind);
};

}  // namespace velmora
