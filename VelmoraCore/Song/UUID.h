#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// A 128-bit random identifier. The default value is all zero and names nothing.
struct UUID {
  std::array<std::uint8_t, 16> bytes{};

  /// A fresh random identifier (version 4).
  static UUID random();

  /// Reads the canonical form of 36 characters in either case; anything else is empty.
  static std::optional<UUID> parse(std::string_view text);

  /// The canonical form in upper case.
  std::string text() const;

  // The check takes a zero inside the library for one of ours.
  auto operator<=>(const UUID&) const = default;  // NOLINT(modernize-use-nullptr)
};

}  // namespace velmora

template <>
struct std::hash<velmora::UUID> {
  std::size_t operator()(const velmora::UUID& id) const noexcept;
};
