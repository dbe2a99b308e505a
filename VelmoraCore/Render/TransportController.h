#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>

#include "VelmoraCore/Instruments/ShortLock.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// `pattern`: each track loops its selected pattern. `song`: the arrangement plays.
enum class PlaybackMode : std::uint8_t { pattern, song };

std::string_view storedValue(PlaybackMode mode);
std::optional<PlaybackMode> playbackMode(std::string_view storedValue);

/// Where the transport stands: the anchor pairs a beat with a sample time of the audio host.
struct TransportState {
  bool isPlaying = false;
  PlaybackMode mode = PlaybackMode::pattern;
  double bpm = 128;
  std::optional<LoopRange> loop;  ///< the song's; honoured in song mode only
  double anchorBeat = 0;
  std::optional<double> anchorSampleTime;  ///< empty: the next block sets it

  bool operator==(const TransportState&) const = default;
};

/// The transport's answer for one block.
struct RenderTiming {
  bool isPlaying = false;
  double startBeat = 0;  ///< of the first frame, not wrapped
  double beatsPerFrame = 0;
  PlaybackMode mode = PlaybackMode::pattern;
  std::optional<LoopRange> loop;  ///< empty in pattern mode
};

/// Turns the sample clock of the audio host into musical position.
///
/// A position is never a running sum: it is derived from the anchor, so that it doesn't drift and a change of
/// tempo or a seek takes effect exactly at a block's start. The transport never stops by itself; positions
/// inside the song come from wrapping. Commands run on the main thread, `timing` and `publish` on the audio
/// threads.
class TransportController {
 public:
  explicit TransportController(const TransportState& state = {});

  TransportState state() const noexcept;

  /// Runs `body` with the state under the lock; it may only store a few fields.
  template <class Body>
  void update(Body body) {
    const std::lock_guard guard(stateLock_);
    body(state_);
  }

  void play() noexcept;

  /// The first stop holds the position, a second one returns to beat 0.
  void stop() noexcept;
  void togglePlay() noexcept;
  void seek(double beat) noexcept;

  /// Clamped to 40 to 300; pivots on the present position.
  void setBPM(double bpm) noexcept;

  /// Rewinds to beat 0, playing or not.
  void setMode(PlaybackMode mode) noexcept;
  void setLoop(std::optional<LoopRange> loop) noexcept;

  /// The position to show, wrapped. Any thread.
  double playhead() const noexcept { return playhead_.load(std::memory_order_relaxed); }

  /// The beat at which the last rendered block ended, not wrapped. Any thread.
  double renderedBeat() const noexcept { return renderedBeat_.load(std::memory_order_relaxed); }

  /// [audio thread]
  void publish(double playheadBeat) noexcept { playhead_.store(playheadBeat, std::memory_order_relaxed); }

  /// Where the block at the sample time begins; the same for every track that asks. [audio thread]
  RenderTiming timing(double atSampleTime, int frameCount, double sampleRate) noexcept;

 private:
  void moveTo(double beat) noexcept;

  mutable ShortLock stateLock_;
  TransportState state_;  // guarded by stateLock_
  std::atomic<double> playhead_;
  std::atomic<double> renderedBeat_;
};

}  // namespace velmora
