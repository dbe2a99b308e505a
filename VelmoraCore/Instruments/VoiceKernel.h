#pragma once

#include <span>

#include "VelmoraCore/Instruments/VoiceLanes.h"

namespace velmora {

/// The sample loops of the synthesizer, built for one instruction set. All kernels give the same bits.
struct VoiceKernel {
  const char* name;

  /// Steps all voices by `frameCount` samples and writes their sums, in the order of the voices. No fade may
  /// end within. [audio thread]
  void (*step)(VoiceLanes& voices, int frameCount, float* sums) noexcept;

  /// Adds tanh(drive * sum) for each of `frameCount` sums. [audio thread]
  void (*addClipped)(float* into, const float* sums, float drive, int frameCount) noexcept;
};

/// The kernels that this processor can run, the fastest first.
std::span<const VoiceKernel> voiceKernels() noexcept;

}  // namespace velmora
