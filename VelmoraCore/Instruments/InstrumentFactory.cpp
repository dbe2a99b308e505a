#include "VelmoraCore/Instruments/InstrumentFactory.h"

#include "VelmoraCore/Instruments/DrumSynth.h"
#include "VelmoraCore/Instruments/PolySynth.h"

namespace velmora {

std::unique_ptr<Instrument> InstrumentFactory::make(TrackKind kind) {
  switch (kind.family()) {
    case TrackFamily::synth:
      return std::make_unique<PolySynth>(*kind.preset());
    case TrackFamily::drums:
      return std::make_unique<DrumSynth>();
    case TrackFamily::audio:
      return nullptr;
  }
  return nullptr;
}

}  // namespace velmora
