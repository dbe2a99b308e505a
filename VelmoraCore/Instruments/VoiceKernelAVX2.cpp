// Built with 256-bit vectors; called only where the processor has them.
#include "VelmoraCore/Instruments/VoiceKernelText.h"

namespace velmora {

extern const VoiceKernel avx2VoiceKernel;
const VoiceKernel avx2VoiceKernel = {"avx2", &VoiceKernelText<32>::step, &VoiceKernelText<32>::addClipped};

}  // namespace velmora
