#pragma once

/// Before a function whose loops run along time: it is compiled twice, for the x86 baseline and for
/// processors with vectors of eight (AVX2), and the loader picks one. Both give the same bits, as neither
/// fuses multiply and add. Sanitizers can't instrument the loader's choice, so they see the baseline alone.
#if defined(__x86_64__) && defined(__linux__) && !defined(VELMORA_SANITIZED)
#define PLATFORM_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define PLATFORM_VECTOR_CLONES
#endif
