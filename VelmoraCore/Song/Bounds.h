#pragma once

#include <algorithm>
#include <cmath>
#include <optional>

/// What the edit helpers do with numbers out of range.
namespace velmora {

/// The upper bound wins where the two cross; a negative zero becomes a plain one.
inline double raisedThenLowered(double value, double low, double high) {
  return std::min(std::max(low, value), high);
}

inline bool isFiniteIfGiven(std::optional<double> value) { return !value || std::isfinite(*value); }

}  // namespace velmora
