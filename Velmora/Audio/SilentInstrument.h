#pragma once

#include <memory>

#include "VelmoraCore/Instruments/InstrumentFactory.h"

namespace velmora {

/// Does nothing, so that an audio track has the same shape in the graph as every other.
class SilentInstrument final : public Instrument {
 public:
  void prepare(double, int) override {}
  void noteOn(std::uint8_t, std::uint8_t, std::int64_t) noexcept override {}
  void noteOff(std::uint8_t, std::int64_t) noexcept override {}
  void allNotesOff() noexcept override {}
  void render(float*, int) noexcept override {}
};

/// The instrument of a track of the kind; a silent one for audio tracks.
inline std::unique_ptr<Instrument> makeInstrument(TrackKind kind) {
  auto instrument = InstrumentFactory::make(kind);
  return instrument ? std::move(instrument) : std::make_unique<SilentInstrument>();
}

}  // namespace velmora
