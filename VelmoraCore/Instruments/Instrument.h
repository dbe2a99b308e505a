#pragma once

#include <cstdint>

namespace velmora {

/// What a track sounds through. Notes are given in frames of the block that is rendered next, so that each
/// begins on its exact sample.
///
/// All operations run on the one thread that renders the track, `prepare` only while nothing renders.
class Instrument {
 public:
  virtual ~Instrument() = default;

  /// Forgets queued events, resets all sound and takes the rate in frames per second.
  virtual void prepare(double sampleRate, int maxFrames) = 0;

  // [audio thread] A negative frame counts as 0.
  virtual void noteOn(std::uint8_t pitch, std::uint8_t velocity, std::int64_t atFrame) noexcept = 0;
  virtual void noteOff(std::uint8_t pitch, std::int64_t atFrame) noexcept = 0;

  /// Forgets queued events and releases what sounds, as far as the instrument knows a release. [audio thread]
  virtual void allNotesOff() noexcept = 0;

  /// Adds `frameCount` mono samples to `into`; never overwrites. [audio thread]
  virtual void render(float* into, int frameCount) noexcept = 0;
};

}  // namespace velmora
