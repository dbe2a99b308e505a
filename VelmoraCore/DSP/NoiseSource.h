#pragma once

#include <cstdint>

namespace velmora {

/// White noise from Marsaglia's 32-bit xorshift generator (13, 17, 5). [audio thread]
struct NoiseSource {
  static constexpr std::uint32_t seedForZero = 625341585;

  std::uint32_t state = seedForZero;

  NoiseSource() = default;
  explicit NoiseSource(std::uint32_t seed) noexcept : state(seed == 0 ? seedForZero : seed) {}

  /// The next sample, from -1 to 1.
  float next() noexcept {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    return static_cast<float>(static_cast<std::int32_t>(state)) * 0x1p-31F;
  }
  float nextSample() noexcept { return next(); }
};

}  // namespace velmora
