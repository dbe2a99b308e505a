#include "VelmoraCore/Song/JSONScalar.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace velmora {
namespace {

// 2 to the 63rd: the first double past the integers of 64 bits.
constexpr double integerEnd = 9223372036854775808.0;

std::optional<std::int64_t> integer(const Scalar& scalar) {
  if (const auto* number = std::get_if<std::int64_t>(&scalar)) return *number;
  if (const auto* number = std::get_if<std::uint64_t>(&scalar)) {
    return std::in_range<std::int64_t>(*number) ? std::optional(static_cast<std::int64_t>(*number))
                                                : std::nullopt;
  }
  const auto* number = std::get_if<Decimal>(&scalar);
  if (!number || number->value < -integerEnd || number->value >= integerEnd) return {};
  return std::trunc(number->value) == number->value ? std::optional(static_cast<std::int64_t>(number->value))
                                                    : std::nullopt;
}

// Rounding by way of a double could round twice. The parser writes the decimal point of the C locale.
float roundedOnce(const Decimal& number) {
  std::string digits(number.digits);
  std::replace_if(
      digits.begin(), digits.end(),
      [](char c) { return std::string_view("0123456789+-eE").find(c) == std::string_view::npos; }, '.');
  float value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (result.ec == std::errc()) return value;
  // Out of range: too small becomes a zero, too large an infinity.
  return std::abs(number.value) < 1 ? std::copysign(0.0F, static_cast<float>(number.value))
                                    : std::numeric_limits<float>::infinity();
}

template <class Value>
bool assign(Value& value, const std::optional<Value>& found) {
  if (found) value = *found;
  return found.has_value();
}

template <class Value>
bool readText(const Scalar& scalar, Value& value, std::optional<Value> (*parse)(std::string_view)) {
  const auto* text = std::get_if<std::string_view>(&scalar);
  return text && assign(value, parse(*text));
}

template <class Float>
std::optional<Float> fromInteger(const Scalar& scalar) {
  if (const auto* number = std::get_if<std::int64_t>(&scalar)) return static_cast<Float>(*number);
  if (const auto* number = std::get_if<std::uint64_t>(&scalar)) return static_cast<Float>(*number);
  return {};
}

}  // namespace

bool read(const Scalar& scalar, bool& value) {
  const auto* truth = std::get_if<bool>(&scalar);
  if (truth) value = *truth;
  return truth != nullptr;
}

bool read(const Scalar& scalar, std::uint8_t& value) {
  const auto number = integer(scalar);
  if (!number || !std::in_range<std::uint8_t>(*number)) return false;
  value = static_cast<std::uint8_t>(*number);
  return true;
}

bool read(const Scalar& scalar, std::int64_t& value) { return assign(value, integer(scalar)); }

bool read(const Scalar& scalar, float& value) {
  const auto* decimal = std::get_if<Decimal>(&scalar);
  const auto number = decimal ? std::optional(roundedOnce(*decimal)) : fromInteger<float>(scalar);
  return number && std::isfinite(*number) && assign(value, number);
}

bool read(const Scalar& scalar, double& value) {
  const auto* decimal = std::get_if<Decimal>(&scalar);
  return assign(value, decimal ? std::optional(decimal->value) : fromInteger<double>(scalar));
}

bool read(const Scalar& scalar, std::string& value) {
  const auto* text = std::get_if<std::string_view>(&scalar);
  if (text) value = *text;
  return text != nullptr;
}

bool read(const Scalar& scalar, UUID& value) { return readText(scalar, value, &UUID::parse); }
bool read(const Scalar& scalar, TrackColor& value) { return readText(scalar, value, &trackColor); }
bool read(const Scalar& scalar, SynthPreset& value) { return readText(scalar, value, &synthPreset); }

}  // namespace velmora
