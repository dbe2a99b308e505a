#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "VelmoraCore/Instruments/Instrument.h"
#include "VelmoraCore/Instruments/InstrumentEventQueue.h"
#include "VelmoraCore/Instruments/ShortLock.h"
#include "VelmoraCore/Instruments/SynthParameters.h"
#include "VelmoraCore/Instruments/VoiceKernel.h"
#include "VelmoraCore/Instruments/VoiceLanes.h"

namespace velmora {

/// Eight voices of two oscillators into a resonant low-pass with two envelopes, summed and soft-clipped to
/// mono.
///
/// This class keeps the notes: which voice plays what, which is stolen next. The sound of the voices is in
/// `VoiceLanes`, stepped by a `VoiceKernel`. A note off releases, a ninth note steals the oldest voice after
/// a fade of 5 ms, a repeated note rises again from where it stands.
class PolySynth final : public Instrument {
 public:
  using Parameters = SynthParameters;

  explicit PolySynth(SynthPreset preset, const VoiceKernel& kernel = voiceKernels().front());

  /// Asks for another preset; it takes over at the next block. Any thread.
  void setPreset(SynthPreset preset) noexcept;

  void prepare(double sampleRate, int maxFrames) override;
  void noteOn(std::uint8_t pitch, std::uint8_t velocity, std::int64_t atFrame) noexcept override;
  void noteOff(std::uint8_t pitch, std::int64_t atFrame) noexcept override;
  void allNotesOff() noexcept override;
  void render(float* into, int frameCount) noexcept override;

 private:
  /// What one voice plays. While it fades, its note is the pending one; the old one only rings out.
  struct Voice {
    std::uint8_t pitch = 0;
    bool isActive = false;
    bool isHeld = false;
    bool isFading = false;
    std::uint8_t pendingPitch = 0;
    std::uint8_t pendingVelocity = 0;
    std::uint64_t order = 0;

    std::uint8_t currentPitch() const noexcept { return isFading ? pendingPitch : pitch; }
    bool plays(std::uint8_t note) const noexcept { return isActive && currentPitch() == note; }
  };

  Voice& voice(int index) noexcept { return voices_[static_cast<std::size_t>(index)]; }
  void takeRequestedPreset() noexcept;
  void applyParameters() noexcept;
  void retune(int index) noexcept;
  void setVelocity(int index, std::uint8_t velocity) noexcept;

  void apply(const InstrumentEventQueue::Event& event) noexcept;
  void startNote(std::uint8_t pitch, std::uint8_t velocity) noexcept;
  void endNote(std::uint8_t pitch) noexcept;
  void retrigger(int index, std::uint8_t velocity) noexcept;
  void begin(int index, std::uint8_t pitch, std::uint8_t velocity) noexcept;
  void steal(int index, std::uint8_t pitch, std::uint8_t velocity) noexcept;
  int voiceToSteal() const noexcept;
  void release(int index) noexcept;

  void renderFrames(float* into, int frameCount) noexcept;
  void endFadesThatAreDue() noexcept;
  int framesUntilFadeEnds(int atMost) const noexcept;
  void retireEndedVoices() noexcept;
  bool isSilent() const noexcept;

  const VoiceKernel& kernel_;
  std::array<Voice, voiceCount> voices_;
  VoiceLanes lanes_;
  InstrumentEventQueue events_;
  SynthPreset preset_;
  const Parameters* parameters_;
  ShortLock presetLock_;
  std::optional<SynthPreset> requestedPreset_;  // guarded by presetLock_
  float sampleRate_ = 44100;
  float fadeStep_ = 0;
  std::uint64_t voiceOrder_ = 0;  // running count of note-ons
};

}  // namespace velmora
