#pragma once

#include <span>

#include "VelmoraCore/Render/RenderSnapshot.h"
#include "VelmoraCore/Render/TransportController.h"

namespace velmora {

/// Adds the audio clips of a track to its block, straight from memory.
///
/// A clip plays at the speed of its source whatever the tempo; the tempo only decides where it begins and
/// ends. There is no state between blocks: the position in the sample follows from the beat of each frame.
struct AudioClipRenderer {
  /// `track` may be null. [audio thread]
  static void mix(std::span<float> into, const RenderTiming& timing, const TrackRenderSnapshot* track,
                  double outputSampleRate, double songLengthBeats) noexcept;
};

}  // namespace velmora
