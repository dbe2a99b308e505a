#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "Platform/Audio/LateCallbackCounter.h"
#include "Platform/Audio/OutputDevice.h"
#include "Platform/Audio/StreamFeed.h"

namespace platform {

/// Where the audio callback gets its frames: from a source that the main thread sets and takes away while
/// callbacks go on, or else silence.
class OutputFeed final : public StreamFeed {
 public:
  static constexpr int pieceFrames = 8192;  // the largest block that reaches the source whole

  /// Plays `source` from its sample time 0 on.
  void play(OutputSource& source) noexcept;
  /// Returns once the block in flight, if any, has ended: the source isn't called again.
  void silence() noexcept;

  /// Any thread. Counts the callbacks, with a source or without.
  std::uint64_t callbackCount() const noexcept { return callbackCount_.load(std::memory_order_relaxed); }
  /// Any thread. Counts those that came late while a source played.
  std::uint64_t lateCallbacks() const noexcept { return lateness_.count(); }

  /// [audio thread] Writes `frameCount` pairs of samples.
  void fill(float* interleaved, int frameCount, double sampleRate) noexcept;
  /// [audio thread]
  void exchange(const float*, float* output, int frameCount, double sampleRate) noexcept override {
    fill(output, frameCount, sampleRate);
  }

 private:
  /// Returns the end of what it has written.
  float* renderPiece(OutputSource& source, float* interleaved, int frameCount) noexcept;

  std::atomic<OutputSource*> source_{nullptr};
  std::atomic<unsigned> blockEdges_{0};  // counts starts and ends of blocks: odd while one is in flight
  std::atomic<std::uint64_t> callbackCount_{0};
  LateCallbackCounter lateness_;
  std::int64_t frames_ = 0;  // that the source has played
  std::array<float, pieceFrames> left_{}, right_{};
};

}  // namespace platform
