#pragma once

#include <QPointF>
#include <QString>
#include <chrono>
#include <functional>
#include <optional>
#include <vector>

#include "Velmora/Studio/StepGrid/DrumStep.h"

namespace velmora {

/// What can be done with one cell: by a press, a menu or a screen reader.
///
/// A press and its release toggle the step. A press that rests on a step that is on for `holdTime` becomes a
/// drag, where each point upwards adds 1 to the velocity. Only the release acts; whoever drops the control
/// before has cancelled the gesture.
class DrumStepControl {
 public:
  static constexpr std::chrono::milliseconds holdTime{250};
  static constexpr double holdTolerance = 10;  ///< points that a resting press may move
  static constexpr int velocityStep = 8;       ///< of one adjustment

  struct Actions {
    std::function<void()> toggle;
    std::function<void(int velocity)> setVelocity;
  };
  struct MenuItem {
    QString text;
    std::function<void()> run;
  };
  enum class Release { inside, outside };

  DrumStepControl(const DrumStep& step, Actions actions) : step_(step), actions_(std::move(actions)) {}

  const DrumStep& step() const { return step_; }
  bool isOn() const { return step_.velocity.has_value(); }

  void toggle() const { actions_.toggle(); }
  void setVelocity(int velocity) const;  ///< a step that is off ignores it
  void adjustVelocity(int steps) const;  ///< by `velocityStep` each
  std::vector<MenuItem> menu() const;

  void press(QPointF point);
  void hold();  ///< the press has lasted for `holdTime`
  void moveTo(QPointF point);
  void release(Release where) const;

  bool mayBecomeDrag() const { return phase_ == Phase::resting; }
  /// What the release would set; empty unless a drag runs.
  std::optional<int> draggedVelocity() const;

 private:
  enum class Phase { resting, plain, dragging };

  DrumStep step_;
  Actions actions_;
  Phase phase_ = Phase::plain;
  QPointF start_;  // of the press, then of the drag
  QPointF point_;
};

}  // namespace velmora
