#pragma once

#include <string>

namespace velmora::benchmarks {

/// A measured figure with its unit.
struct Amount {
  enum class Unit { seconds, bytes };

  double value = 0;
  Unit unit = Unit::seconds;

  static Amount seconds(double value) { return {value, Unit::seconds}; }
  static Amount bytes(double value) { return {value, Unit::bytes}; }

  /// Three digits and the unit of the right size: "12.3 ms".
  std::string text() const;
};

/// What a goal bounds from above.
struct Goal {
  enum class Bound { ratio, figure };

  Bound bound = Bound::ratio;
  double most = 0;

  static Goal ratio(double most) { return {Bound::ratio, most}; }
  static Goal figure(double most) { return {Bound::figure, most}; }
};

/// Prints one aligned line a goal: name, figure, reference, ratio, goal, and whether it is met.
class Report {
 public:
  void printHeading() const;
  void add(const std::string& name, Amount figure, Amount reference, Goal goal);

  /// A line for files that must be the same.
  void addSameBytes(const std::string& name, bool areSame);

  int missedCount() const noexcept { return missedCount_; }

 private:
  void print(const std::string& name, const std::string& figure, const std::string& reference,
             const std::string& ratio, const std::string& goal, bool isMet);

  int missedCount_ = 0;
};

}  // namespace velmora::benchmarks
