#include "benchmarks/Report.h"

#include <array>
#include <cstdio>
#include <span>

namespace velmora::benchmarks {

namespace {

constexpr const char* lineFormat = "%-52s %9s %9s %8s   %-12s %s\n";

struct Scale {
  double size;
  const char* name;
};
// The largest first; what is smaller than all takes the last.
constexpr std::array<Scale, 4> timeScales{{{1, "s"}, {1e-3, "ms"}, {1e-6, "us"}, {1e-9, "ns"}}};
constexpr std::array<Scale, 3> byteScales{{{1 << 20, "MiB"}, {1 << 10, "KiB"}, {1, "B"}}};

std::string threeDigits(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), value >= 99.95 ? "%.0f" : value >= 9.995 ? "%.1f" : "%.2f", value);
  return text.data();
}

std::string ratioText(double ratio) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), ratio >= 0.1 ? "%.3f" : ratio >= 1e-3 ? "%.4f" : "%.1e", ratio);
  return text.data();
}

}  // namespace

std::string Amount::text() const {
  const std::span<const Scale> scales =
      unit == Unit::seconds ? std::span<const Scale>(timeScales) : std::span<const Scale>(byteScales);
  for (const Scale& scale : scales)
    if (value >= scale.size) return threeDigits(value / scale.size) + " " + scale.name;
  return threeDigits(value / scales.back().size) + " " + scales.back().name;
}

void Report::printHeading() const {
  std::printf(lineFormat, "what", "figure", "reference", "ratio", "goal", "");
}

void Report::add(const std::string& name, Amount figure, Amount reference, Goal goal) {
  const double ratio = figure.value / reference.value;
  const bool isRatio = goal.bound == Goal::Bound::ratio;
  const std::string limit = isRatio ? ratioText(goal.most) : Amount{goal.most, figure.unit}.text();
  print(name, figure.text(), reference.text(), ratioText(ratio), "<= " + limit,
        (isRatio ? ratio : figure.value) <= goal.most);
}

void Report::addSameBytes(const std::string& name, bool areSame) {
  print(name, areSame ? "same" : "differ", "", "", "same bytes", areSame);
}

void Report::print(const std::string& name, const std::string& figure, const std::string& reference,
                   const std::string& ratio, const std::string& goal, bool isMet) {
  std::printf(lineFormat, name.c_str(), figure.c_str(), reference.c_str(), ratio.c_str(), goal.c_str(),
              isMet ? "met" : "missed");
  std::fflush(stdout);
  if (!isMet) ++missedCount_;
}

}  // namespace velmora::benchmarks
