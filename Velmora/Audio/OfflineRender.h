#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <stop_token>
#include <vector>

#include "Platform/Audio/AudioGraph.h"
#include "Platform/Audio/WorkerTeam.h"
#include "Velmora/Audio/RenderContext.h"
#include "Velmora/Audio/TrackEffects.h"
#include "VelmoraCore/Render/RenderSnapshot.h"

namespace velmora {

/// Why a project can't be rendered.
struct ExportError : std::runtime_error {
  using std::runtime_error::runtime_error;
  static ExportError tooLong() { return ExportError("WAV export supports arrangements up to 30 minutes."); }
  static ExportError renderFailed() {
    return ExportError("The audio engine could not finish rendering this project.");
  }
};

/// What to render, and how much of it.
struct OfflineRenderRequest {
  Song song;
  AudioSamples samples;
  std::optional<double> maximumSeconds;  ///< cuts the song; none for the whole song and its tail
  int threadCount = 0;                   ///< 0 for all cores; the result is the same for any number
};

/// One render of a song, faster than real time: a private graph with the same sources and effects as the live
/// one, pulled in blocks at 44100 Hz. After the song's end the transport stops and three seconds of tail ring
/// out.
class OfflineRender {
 public:
  static constexpr double sampleRate = 44100;
  static constexpr std::int64_t tailFrames = 132300;
  static constexpr double longestSeconds = 1800;

  /// A block of the mix: both sides, of equal length.
  using Sink = std::function<void(std::span<const float> left, std::span<const float> right)>;
  using OnProgress = std::function<void(double fraction)>;

  /// Throws `ExportError` for a song that is too long.
  explicit OfflineRender(const OfflineRenderRequest& request);

  std::int64_t totalFrames() const noexcept { return totalFrames_; }

  /// Hands block after block to the sink and tells the fraction done in steps of at least a hundredth. Once
  /// only. Throws `platform::Cancelled` once a stop is requested, and what the sink throws.
  void run(const Sink& sink, const OnProgress& onProgress = {}, const std::stop_token& stop = {});

 private:
  struct TrackNode {
    std::unique_ptr<RenderContext> context;
    std::unique_ptr<TrackEffects> effects;
  };

  void countFrames(const OfflineRenderRequest& request);
  void prepareTransport(const Song& song);
  TrackNode makeTrack(const Track& track, bool isAnySoloed);

  std::int64_t totalFrames_ = 0;
  std::int64_t stopFrame_ = 0;  // where the transport stops; a block boundary
  TransportController transport_;
  SnapshotStore store_;
  std::vector<TrackNode> tracks_;
  platform::WorkerTeam team_;
  platform::AudioGraph graph_;
};

}  // namespace velmora
