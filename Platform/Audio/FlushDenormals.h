#pragma once

#include <cstdint>

namespace platform {

/// Scoped guard: while it lives, the calling thread's processor takes denormal numbers for zero, in and out,
/// so that decaying feedback neither slows down nor lingers. Does nothing on processors other than x86 and
/// 64-bit ARM.
class FlushDenormals {
 public:
  FlushDenormals() noexcept;   // [audio thread]
  ~FlushDenormals() noexcept;  // [audio thread]
  FlushDenormals(const FlushDenormals&) = delete;
  FlushDenormals& operator=(const FlushDenormals&) = delete;

 private:
  std::uint64_t previous_;
};

}  // namespace platform
