#pragma once

#include <vector>

namespace velmora::testing {

/// Some steps of a unit, computed elsewhere.
struct StepRow {
  struct Step {
    int number;
    float value;
  };
  const char* name;  ///< unit or sound, its settings, sample rate
  std::vector<Step> steps;
};

}  // namespace velmora::testing
