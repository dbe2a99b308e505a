#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Platform/Audio/AudioGraph.h"
#include "Velmora/Audio/RenderContext.h"
#include "Velmora/Audio/TrackEffects.h"
#include "VelmoraCore/Instruments/Instrument.h"

namespace velmora::benchmarks {

/// All tracks of a song in a playing graph on one thread, with instruments of the caller's choice.
class TrackRack {
 public:
  using MakeInstrument = std::function<std::unique_ptr<Instrument>()>;
  struct Instruments {
    MakeInstrument track;
    MakeInstrument audition;  ///< for the keys held by hand
  };

  TrackRack(const Song& song, double sampleRate, const Instruments& instruments);

  TransportController& transport() noexcept { return transport_; }
  platform::AudioGraph& graph() noexcept { return graph_; }

 private:
  struct Node {
    std::unique_ptr<RenderContext> context;
    std::unique_ptr<TrackEffects> effects;
  };

  Node makeNode(const Track& track, const Instruments& instruments);

  TransportController transport_;
  SnapshotStore store_;
  std::vector<Node> nodes_;
  platform::AudioGraph graph_;
};

}  // namespace velmora::benchmarks
