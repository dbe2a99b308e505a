#pragma once

#include <bitset>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "VelmoraCore/Instruments/Instrument.h"
#include "VelmoraCore/Render/RenderSnapshot.h"
#include "VelmoraCore/Render/TransportController.h"

namespace velmora {

/// The bridge of one track from the beat timeline to its instrument.
///
/// For each block it finds the events that fall inside and hands each to the instrument on its frame. It
/// survives what can happen between two blocks (seek, change of mode, edit, stop) and inside one (loop
/// wraps): no note hangs, no event is played twice or dropped at a seam. One audio thread at a time.
class TrackRenderer {
 public:
  TrackRenderer(const UUID& trackID, std::unique_ptr<Instrument> instrument);

  const UUID& trackID() const noexcept { return trackID_; }

  /// While nothing renders; the instrument loses its sounding notes.
  void prepare(double sampleRate, int maxFrames);

  /// Overwrites `into` with the track's next block; silent, but no less advanced, where the track isn't
  /// audible. [audio thread]
  void render(std::span<float> into, const RenderTiming& timing, const RenderSnapshot& snapshot) noexcept;

 private:
  /// Where a block reads events: a range of beats that repeats.
  struct Cycle {
    LoopRange range;
    bool isSong = false;
  };

  /// A stretch of the block within one turn of the cycle.
  struct Segment {
    double fromBlockStart;  ///< beats from the block's first frame
    double start;           ///< wrapped beat
    double end;
  };

  void renderEvents(const TrackRenderSnapshot& track, int frameCount, const RenderTiming& timing,
                    double songLengthBeats) noexcept;
  void releaseAfterEdit(const TrackRenderSnapshot& track) noexcept;
  double scanStart(const RenderTiming& timing) noexcept;
  static std::optional<Cycle> cycleOf(const TrackRenderSnapshot& track, const RenderTiming& timing,
                                      double songLengthBeats) noexcept;
  void playSegment(const TrackRenderSnapshot& track, const Segment& segment, int frameCount,
                   double beatsPerFrame) noexcept;
  void play(const NoteEvent& event, int atFrame) noexcept;
  void releaseActive(int atFrame) noexcept;
  void cutAllNotes() noexcept;

  UUID trackID_;
  std::unique_ptr<Instrument> instrument_;
  double sampleRate_ = 48000;
  int maxFrames_ = 0;
  bool wasPlaying_ = false;
  PlaybackMode lastMode_ = PlaybackMode::pattern;
  double lastEndBeat_ = 0;
  std::optional<std::int64_t> lastFingerprint_;
  std::bitset<128> activePitches_;  // started and not yet ended
};

}  // namespace velmora
