#pragma once

#include <vector>

namespace velmora::testing {

/// Some steps of a unit, computed once from its formulas by a second, independent writing of them: in double
/// precision, rounded to single after every operation.
struct StepRow {
  struct Step {
    int number;
    float value;
  };
  const char* name;  ///< unit or sound, its settings, sample rate
  std::vector<Step> steps;
};

}  // namespace velmora::testing
