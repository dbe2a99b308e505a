#include "Platform/Audio/FlushDenormals.h"

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace platform {
namespace {

#if defined(__SSE2__)
constexpr std::uint64_t flushBits = 0x8040;  // MXCSR: flush to zero (15), denormals are zero (6)
std::uint64_t controlWord() { return _mm_getcsr(); }
void setControlWord(std::uint64_t word) { _mm_setcsr(static_cast<unsigned>(word)); }
#elif defined(__aarch64__)
constexpr std::uint64_t flushBits = std::uint64_t{1} << 24;  // FPCR: flush to zero
std::uint64_t controlWord() {
  std::uint64_t word = 0;
  asm volatile("mrs %0, fpcr" : "=r"(word));
  return word;
}
void setControlWord(std::uint64_t word) { asm volatile("msr fpcr, %0" : : "r"(word)); }
#else
constexpr std::uint64_t flushBits = 0;
std::uint64_t controlWord() { return 0; }
void setControlWord(std::uint64_t) {}
#endif

}  // namespace

FlushDenormals::FlushDenormals() noexcept : previous_(controlWord()) {
  setControlWord(previous_ | flushBits);
}

FlushDenormals::~FlushDenormals() noexcept { setControlWord(previous_); }

}  // namespace platform
