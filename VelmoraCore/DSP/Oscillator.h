#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace velmora {

enum class Waveform : std::uint8_t { sine, triangle, saw, square };

inline constexpr std::array<Waveform, 4> allWaveforms = {Waveform::sine, Waveform::triangle, Waveform::saw,
                                                         Waveform::square};
std::string_view storedValue(Waveform waveform);
std::optional<Waveform> waveform(std::string_view storedValue);

/// One turn, as a single: the constant of every sine.
inline constexpr float radiansPerCycle = 0x1.921fb4p+2F;  // bits 0x40C90FDA

/// A phase accumulator with four shapes; saw and square are band-limited by a two-sample polynomial
/// (polyBLEP), the triangle deliberately isn't. [audio thread]
struct Oscillator {
  Waveform waveform = Waveform::saw;
  float phase = 0;           ///< cycles, from 0 up to 1
  float phaseIncrement = 0;  ///< cycles per sample, from 0 to 0.5

  Oscillator() = default;
  explicit Oscillator(Waveform shape) noexcept : waveform(shape) {}

  void setFrequency(float frequency, float sampleRate) noexcept;
  void reset(float toPhase) noexcept;
  float nextSample() noexcept;
};

}  // namespace velmora
