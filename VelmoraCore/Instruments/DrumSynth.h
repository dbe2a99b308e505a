#pragma once

#include <array>
#include <cstdint>

#include "VelmoraCore/Instruments/DrumVoice.h"
#include "VelmoraCore/Instruments/Instrument.h"
#include "VelmoraCore/Instruments/InstrumentEventQueue.h"

namespace velmora {

/// The synthesized drum kit: eight one-shot voices, one for each sound, added without a clip.
///
/// A hit always plays out: neither a note off nor `allNotesOff` ends it.
class DrumSynth final : public Instrument {
 public:
  DrumSynth();

  void prepare(double sampleRate, int maxFrames) override;
  void noteOn(std::uint8_t pitch, std::uint8_t velocity, std::int64_t atFrame) noexcept override;
  void noteOff(std::uint8_t pitch, std::int64_t atFrame) noexcept override;
  void allNotesOff() noexcept override;
  void render(float* into, int frameCount) noexcept override;

 private:
  static constexpr int soundCount = 8;
  static constexpr int pitchCount = 128;

  void hit(std::uint8_t pitch, std::uint8_t velocity) noexcept;
  void renderFrames(float* into, int frameCount) noexcept;

  std::array<DrumVoice, soundCount> voices_;
  InstrumentEventQueue events_;
  std::array<int, pitchCount> voiceIndexForPitch_;  // -1 where no sound lives
};

}  // namespace velmora
