#pragma once

namespace controls {

/// All numbers from `lower` to `upper`, both included; `lower` is at most `upper`.
template <class T>
struct ClosedRange {
  T lower{};
  T upper{};

  constexpr T length() const { return upper - lower; }

  bool operator==(const ClosedRange&) const = default;
};

}  // namespace controls
