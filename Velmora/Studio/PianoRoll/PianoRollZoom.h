#pragma once

#include <algorithm>

namespace velmora {

/// How wide a beat is in the piano roll: the zoom that stays and the pinch that is under way.
struct PianoRollZoom {
  static constexpr float step = 1.25F;
  static constexpr float lowest = 0.5F;
  static constexpr float highest = 3;
  static constexpr double pointsPerBeatAtOne = 160;

  float zoom = 1;
  float magnification = 1;

  /// 80 to 480.
  double pointsPerBeat() const {
    return pointsPerBeatAtOne * static_cast<double>(clamped(zoom * magnification));
  }

  void in() { scale(step); }
  void out() { zoom = clamped(zoom / step); }
  void scale(float factor) { zoom = clamped(zoom * factor); }
  void endPinch() {
    zoom = clamped(zoom * magnification);
    magnification = 1;
  }

 private:
  static float clamped(float factor) { return std::clamp(factor, lowest, highest); }
};

}  // namespace velmora
