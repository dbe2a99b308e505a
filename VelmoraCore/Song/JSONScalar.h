#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "VelmoraCore/Song/Track.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// A number written with a fraction or an exponent, or too long for an integer: its value and its digits.
struct Decimal {
  double value = 0;
  std::string_view digits;
};

/// A JSON value that is neither an object nor an array.
using Scalar = std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, Decimal, std::string_view>;

// Each reads a scalar as one type of the document; false where it isn't of that type, with `value` untouched.
// An integer may be written as 36.0, a float as an integer; a 32-bit float is rounded once, from its digits.
bool read(const Scalar& scalar, bool& value);
bool read(const Scalar& scalar, std::uint8_t& value);
bool read(const Scalar& scalar, std::int64_t& value);
bool read(const Scalar& scalar, float& value);
bool read(const Scalar& scalar, double& value);
bool read(const Scalar& scalar, std::string& value);
bool read(const Scalar& scalar, UUID& value);
bool read(const Scalar& scalar, TrackColor& value);
bool read(const Scalar& scalar, SynthPreset& value);

/// What a value of the type has to be, for the end of an error's sentence.
template <class T>
inline constexpr std::string_view wanted = "";
template <>
inline constexpr std::string_view wanted<bool> = "true or false";
template <>
inline constexpr std::string_view wanted<std::uint8_t> = "an integer from 0 to 255";
template <>
inline constexpr std::string_view wanted<std::int64_t> = "an integer";
template <>
inline constexpr std::string_view wanted<float> = "a 32-bit number";
template <>
inline constexpr std::string_view wanted<double> = "a number";
template <>
inline constexpr std::string_view wanted<std::string> = "a string";
template <>
inline constexpr std::string_view wanted<UUID> = "a UUID";
template <>
inline constexpr std::string_view wanted<TrackColor> = "the name of a track color";
template <>
inline constexpr std::string_view wanted<SynthPreset> = "the name of a synthesizer preset";

}  // namespace velmora
