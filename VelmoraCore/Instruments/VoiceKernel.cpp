#include "VelmoraCore/Instruments/VoiceKernel.h"

#include "VelmoraCore/Instruments/VoiceKernelText.h"

namespace velmora {

#ifdef VELMORA_AVX2
extern const VoiceKernel avx2VoiceKernel;
#endif

namespace {

constexpr VoiceKernel baseline = {"baseline", &VoiceKernelText<16>::step, &VoiceKernelText<16>::addClipped};

}  // namespace

std::span<const VoiceKernel> voiceKernels() noexcept {
#ifdef VELMORA_AVX2
  static const VoiceKernel all[] = {avx2VoiceKernel, baseline};
  static const bool hasAVX2 = __builtin_cpu_supports("avx2") != 0;
  return hasAVX2 ? std::span(all) : std::span(all).subspan(1);
#else
  static const VoiceKernel all[] = {baseline};
  return all;
#endif
}

}  // namespace velmora
