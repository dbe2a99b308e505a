#pragma once

namespace velmora {

/// A parameter that follows its target exponentially and arrives for good. [audio thread]
struct SmoothedValue {
  float current = 0;
  float target = 0;
  float coefficient = 1;

  explicit SmoothedValue(float value) noexcept : current(value), target(value) {}

  void setTarget(float value) noexcept { target = value; }
  void snap(float to) noexcept { current = target = to; }

  /// The time constant; none or less makes the value jump.
  void setSmoothingTime(float seconds, float sampleRate) noexcept;

  float nextSample() noexcept;
  bool isSmoothing() const noexcept { return current != target; }
};

}  // namespace velmora
