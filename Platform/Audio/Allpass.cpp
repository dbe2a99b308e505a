#include "Platform/Audio/Allpass.h"

#include "Platform/Audio/Samples.h"
#include "Platform/Audio/VectorClones.h"

namespace platform {
namespace {

/// `delayed` and `input` lie in the same line, a delay apart, so they never overlap.
PLATFORM_VECTOR_CLONES void diffuse(const float* __restrict delayed, float* __restrict input,
                                    float* __restrict samples, float gain, int frameCount) noexcept {
  for (int n = 0; n < frameCount; ++n) {
    input[n] = samples[n] - gain * delayed[n];
    samples[n] = delayed[n] + gain * input[n];
  }
}

}  // namespace

void Allpass::prepare(int delay, float gain) {
  delay_ = delay;
  gain_ = gain;
  line_.prepare(delay);
}

bool Allpass::process(float* samples, int frameCount) noexcept {
  float* const input = line_.head();
  diffuse(line_.read(delay_), input, samples, gain_, frameCount);
  const bool isInputSilent = isSilent(input, frameCount);
  line_.advance(frameCount);
  return isInputSilent;
}

}  // namespace platform
