#pragma once

#include "Platform/Audio/AudioGraph.h"
#include "VelmoraCore/Song/Track.h"

namespace velmora {

/// The fixed effect chain behind every track: equalizer, delay, reverb and the channel strip. A new chain is
/// flat and dry.
class TrackEffects {
 public:
  explicit TrackEffects(double sampleRate);

  /// The row of the graph that runs `source` through this chain; both must outlive their place in the graph.
  platform::Strip strip(platform::SourceNode& source) noexcept;

  /// Clamps the gains to -12 to 12 dB and the mixes to 0 to 1, and sets them; takes effect while audio runs.
  void apply(const FXSettings& settings) noexcept;

  platform::MixerNode& channel() noexcept { return channel_; }
  const platform::Equalizer& equalizer() const noexcept { return equalizer_; }
  const platform::Delay& delay() const noexcept { return delay_; }
  const platform::Reverb& reverb() const noexcept { return reverb_; }

 private:
  platform::Equalizer equalizer_;
  platform::Delay delay_{0.25, 25};  // seconds, whatever the tempo; percent of feedback
  platform::Reverb reverb_;
  platform::MixerNode channel_;
};

}  // namespace velmora
