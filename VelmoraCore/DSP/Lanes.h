#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

/// For the small parts of a lane-wise formula: a call would pass whole vectors through memory.
#define VELMORA_INLINE [[gnu::always_inline]] inline

namespace velmora {

/// Eight numbers that are worked on together, held in native vectors of `width` bytes.
///
/// Every operation is the plain one on each lane, rounded once, so that a formula gives the same bits on a
/// scalar and on lanes of any width. The width is part of the type: code for one instruction set never shares
/// a symbol with code for another.
template <class T, int width>
struct Lanes {
  typedef T Part __attribute__((vector_size(width)));
  static constexpr int count = 8;
  static constexpr int parts = count * static_cast<int>(sizeof(T)) / width;
  using Integer = std::conditional_t<sizeof(T) == 4, std::int32_t, std::int64_t>;
  using Mask = Lanes<Integer, width>;  ///< all bits set where true

  Part part[parts];

  Lanes() = default;
  VELMORA_INLINE Lanes(
      T value) {  // NOLINT(google-explicit-constructor): a number stands for itself in every lane
    for (int i = 0; i < parts; ++i) part[i] = value - Part{};
  }
  VELMORA_INLINE static Lanes load(const T* source) {
    Lanes result;
    std::memcpy(result.part, source, sizeof(result.part));
    return result;
  }
  VELMORA_INLINE void store(T* target) const { std::memcpy(target, part, sizeof(part)); }

  template <class Operation>
  VELMORA_INLINE static Lanes map(const Lanes& a, const Lanes& b, Operation operation) {
    Lanes result;
    for (int i = 0; i < parts; ++i) result.part[i] = operation(a.part[i], b.part[i]);
    return result;
  }
  template <class Comparison>
  VELMORA_INLINE static Mask compare(const Lanes& a, const Lanes& b, Comparison comparison) {
    Mask result;
    for (int i = 0; i < parts; ++i) result.part[i] = comparison(a.part[i], b.part[i]);
    return result;
  }

  VELMORA_INLINE friend Lanes operator+(const Lanes& a, const Lanes& b) {
    return map(a, b, [](Part x, Part y) -> Part { return x + y; });
  }
  VELMORA_INLINE friend Lanes operator-(const Lanes& a, const Lanes& b) {
    return map(a, b, [](Part x, Part y) -> Part { return x - y; });
  }
  VELMORA_INLINE friend Lanes operator*(const Lanes& a, const Lanes& b) {
    return map(a, b, [](Part x, Part y) -> Part { return x * y; });
  }
  VELMORA_INLINE friend Lanes operator/(const Lanes& a, const Lanes& b) {
    return map(a, b, [](Part x, Part y) -> Part { return x / y; });
  }
  VELMORA_INLINE friend Lanes operator&(const Lanes& a, const Lanes& b) {
    return map(a, b, [](Part x, Part y) -> Part { return x & y; });
  }
  VELMORA_INLINE friend Lanes operator|(const Lanes& a, const Lanes& b) {
    return map(a, b, [](Part x, Part y) -> Part { return x | y; });
  }
  VELMORA_INLINE friend Lanes operator^(const Lanes& a, const Lanes& b) {
    return map(a, b, [](Part x, Part y) -> Part { return x ^ y; });
  }
  VELMORA_INLINE friend Lanes operator<<(const Lanes& a, int shift) {
    return map(a, a, [shift](Part x, Part) -> Part { return x << shift; });
  }
  VELMORA_INLINE friend Mask operator<(const Lanes& a, const Lanes& b) {
    return compare(a, b, [](Part x, Part y) -> typename Mask::Part { return x < y; });
  }
  VELMORA_INLINE friend Mask operator<=(const Lanes& a, const Lanes& b) {
    return compare(a, b, [](Part x, Part y) -> typename Mask::Part { return x <= y; });
  }
  VELMORA_INLINE friend Mask operator>(const Lanes& a, const Lanes& b) { return b < a; }
  VELMORA_INLINE friend Mask operator>=(const Lanes& a, const Lanes& b) { return b <= a; }
  VELMORA_INLINE friend Mask operator==(const Lanes& a, const Lanes& b) {
    return compare(a, b, [](Part x, Part y) -> typename Mask::Part { return x == y; });
  }
};

/// The bits of each lane as integers, and back.
template <class T, int width>
VELMORA_INLINE typename Lanes<T, width>::Mask bitsOf(const Lanes<T, width>& a) {
  typename Lanes<T, width>::Mask result;
  std::memcpy(&result, &a, sizeof(a));
  return result;
}
template <int width>
VELMORA_INLINE Lanes<double, width> doubleOfBits(const Lanes<std::int64_t, width>& a) {
  Lanes<double, width> result;
  std::memcpy(&result, &a, sizeof(a));
  return result;
}

/// `a` where the mask is set, `b` elsewhere.
template <class T, int width>
VELMORA_INLINE Lanes<T, width> select(const typename Lanes<T, width>::Mask& mask, const Lanes<T, width>& a,
                                      const Lanes<T, width>& b) {
  Lanes<T, width> result;
  for (int i = 0; i < result.parts; ++i) result.part[i] = mask.part[i] ? a.part[i] : b.part[i];
  return result;
}

/// `a` where the mask is set, zero elsewhere.
template <class T, int width>
VELMORA_INLINE Lanes<T, width> onlyWhere(const typename Lanes<T, width>::Mask& mask,
                                         const Lanes<T, width>& a) {
  const auto bits = mask & bitsOf(a);
  Lanes<T, width> result;
  std::memcpy(&result, &bits, sizeof(result));
  return result;
}

/// Whether any sign is set: the processors' own instruction where there is one.
template <class Part>
VELMORA_INLINE bool anySign(const Part& signs) {
  std::uint32_t words[sizeof(Part) / 4];
  std::memcpy(words, &signs, sizeof(words));
  std::uint32_t merged = 0;
  for (const std::uint32_t word : words) merged |= word;
  return merged >> 31 != 0;
}
#ifdef __SSE2__
VELMORA_INLINE bool anySign(const Lanes<float, 16>::Part& signs) {
  return __builtin_ia32_movmskps(signs) != 0;
}
#endif
#ifdef __AVX2__
VELMORA_INLINE bool anySign(const Lanes<float, 32>::Part& signs) {
  return __builtin_ia32_movmskps256(signs) != 0;
}
#endif

/// Whether the mask is set in any lane.
template <class T, int width>
VELMORA_INLINE bool any(const Lanes<T, width>& mask) {
  auto merged = mask.part[0];
  for (int i = 1; i < mask.parts; ++i) merged |= mask.part[i];
  typename Lanes<float, width>::Part signs;
  std::memcpy(&signs, &merged, sizeof(signs));
  return anySign(signs);
}

/// Each lane in double precision, exactly.
template <int width>
VELMORA_INLINE Lanes<double, width> widened(const Lanes<float, width>& a) {
  typedef double Wide __attribute__((vector_size(2 * width)));
  Lanes<double, width> result;
  for (int i = 0; i < a.parts; ++i) {
    const Wide wide = __builtin_convertvector(a.part[i], Wide);
    std::memcpy(&result.part[2 * i], &wide, sizeof(wide));
  }
  return result;
}

/// Each lane rounded to single precision.
template <int width>
VELMORA_INLINE Lanes<float, width> narrowed(const Lanes<double, width>& a) {
  typedef double Wide __attribute__((vector_size(2 * width)));
  Lanes<float, width> result;
  for (int i = 0; i < result.parts; ++i) {
    Wide wide;
    std::memcpy(&wide, &a.part[2 * i], sizeof(wide));
    result.part[i] = __builtin_convertvector(wide, typename Lanes<float, width>::Part);
  }
  return result;
}

// The same vocabulary for a scalar, so that one text serves both.
inline std::int64_t bitsOf(double x) { return std::bit_cast<std::int64_t>(x); }
inline double doubleOfBits(std::int64_t bits) { return std::bit_cast<double>(bits); }
inline double select(bool condition, double a, double b) { return condition ? a : b; }
inline float select(bool condition, float a, float b) { return condition ? a : b; }
inline float onlyWhere(bool condition, float a) { return condition ? a : 0; }
inline double widened(float x) { return static_cast<double>(x); }
inline float narrowed(double x) { return static_cast<float>(x); }

}  // namespace velmora
