#pragma once

#include <bitset>
#include <cstdint>
#include <memory>
#include <span>

#include "VelmoraCore/Instruments/Instrument.h"
#include "VelmoraCore/Instruments/ShortLock.h"

namespace velmora {

/// Plays by hand: the main thread sets which keys are held, the audio thread starts and ends notes to match.
///
/// Live notes have an instrument of their own, so that they never steal voices from the sequence. The audio
/// thread only tries the lock: a key pressed meanwhile sounds one block later.
class LiveNoteRenderer {
 public:
  static constexpr std::uint8_t velocity = 100;

  explicit LiveNoteRenderer(std::unique_ptr<Instrument> instrument);

  /// While nothing renders.
  void prepare(double sampleRate, int maxFrames);

  /// Main thread; a pitch of 128 or more is ignored.
  void setKey(int pitch, bool isOn) noexcept;
  void releaseAll() noexcept;

  /// Adds to the buffer. [audio thread]
  void render(std::span<float> into) noexcept;

 private:
  using Keys = std::bitset<128>;

  ShortLock desiredLock_;
  Keys desired_;  // guarded by desiredLock_
  Keys active_;   // the audio thread's alone
  std::unique_ptr<Instrument> instrument_;
};

}  // namespace velmora
