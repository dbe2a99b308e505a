#pragma once

#include <atomic>
#include <memory>
#include <span>

#include "Platform/Audio/SourceNode.h"
#include "Velmora/Audio/PeakMeter.h"
#include "VelmoraCore/Render/LiveNoteRenderer.h"
#include "VelmoraCore/Render/SnapshotStore.h"
#include "VelmoraCore/Render/TrackRenderer.h"
#include "VelmoraCore/Render/TransportController.h"

namespace velmora {

/// The source of one track in a graph: its patterns, the keys held by hand and its audio clips, in one mono
/// block.
///
/// The same for live playing and for export. Transport and store are shared with others and outlive it.
class RenderContext final : public platform::SourceNode {
 public:
  static constexpr int maxFrames = 4096;

  /// Prepares nothing: renderer and audition come prepared for `sampleRate` and `maxFrames`.
  RenderContext(std::unique_ptr<TrackRenderer> renderer, std::unique_ptr<LiveNoteRenderer> audition,
                TransportController& transport, SnapshotStore& store, double sampleRate);

  /// One block; silent without moving on if it is larger than `maxFrames`. [audio thread]
  void render(double sampleTime, int frameCount, std::span<float> buffer) noexcept override;

  LiveNoteRenderer& audition() noexcept { return *audition_; }
  const PeakMeter& peakMeter() const noexcept { return peakMeter_; }

  /// Whether this context writes the transport's playhead; one of all contexts does. Main thread.
  void setPublishesPlayhead(bool isPublishing) noexcept {
    publishesPlayhead_.store(isPublishing, std::memory_order_relaxed);
  }
  bool publishesPlayhead() const noexcept { return publishesPlayhead_.load(std::memory_order_relaxed); }

  /// Gives the renderer back, for another context at another rate. Not while anything renders.
  std::unique_ptr<TrackRenderer> takeRenderer() noexcept { return std::move(renderer_); }

 private:
  void publishPlayhead(const RenderTiming& timing, int frameCount, const RenderSnapshot& snapshot,
                       const TrackRenderSnapshot* track) noexcept;

  std::unique_ptr<TrackRenderer> renderer_;
  std::unique_ptr<LiveNoteRenderer> audition_;
  TransportController& transport_;
  SnapshotStore& store_;
  const double sampleRate_;
  PeakMeter peakMeter_;
  std::atomic<bool> publishesPlayhead_{false};
};

}  // namespace velmora
