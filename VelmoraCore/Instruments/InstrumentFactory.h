#pragma once

#include <memory>

#include "VelmoraCore/Instruments/Instrument.h"
#include "VelmoraCore/Song/TrackKind.h"

namespace velmora {

struct InstrumentFactory {
  /// A new instrument for the kind; none for audio tracks.
  static std::unique_ptr<Instrument> make(TrackKind kind);
};

}  // namespace velmora
