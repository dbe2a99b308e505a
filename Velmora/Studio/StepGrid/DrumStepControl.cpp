#include "Velmora/Studio/StepGrid/DrumStepControl.h"

#include <QLineF>
#include <algorithm>
#include <cmath>

namespace velmora {
namespace {

struct Preset {
  const char* text;
  int velocity;
};

constexpr Preset presets[] = {{"Soft · 40", 40}, {"Medium · 80", 80}, {"Accent · 127", 127}};

}  // namespace

void DrumStepControl::setVelocity(int velocity) const {
  if (isOn()) actions_.setVelocity(velocity);
}

void DrumStepControl::adjustVelocity(int steps) const {
  setVelocity(step_.velocity.value_or(0) + steps * velocityStep);
}

std::vector<DrumStepControl::MenuItem> DrumStepControl::menu() const {
  std::vector<MenuItem> items{{isOn() ? "Disable Step" : "Enable Step", actions_.toggle}};
  if (!isOn()) return items;
  for (const Preset& preset : presets) {
    items.push_back({preset.text, [set = actions_.setVelocity, preset] { set(preset.velocity); }});
  }
  return items;
}

void DrumStepControl::press(QPointF point) {
  phase_ = isOn() ? Phase::resting : Phase::plain;
  start_ = point_ = point;
}

void DrumStepControl::hold() {
  if (phase_ != Phase::resting) return;
  phase_ = Phase::dragging;
  start_ = point_;
}

void DrumStepControl::moveTo(QPointF point) {
  point_ = point;
  if (phase_ == Phase::resting && QLineF(start_, point).length() > holdTolerance) phase_ = Phase::plain;
}

void DrumStepControl::release(Release where) const {
  if (const auto velocity = draggedVelocity()) return setVelocity(*velocity);
  if (where == Release::inside) toggle();
}

std::optional<int> DrumStepControl::draggedVelocity() const {
  if (phase_ != Phase::dragging) return {};
  const double offset = std::round(point_.y() - start_.y());
  return static_cast<int>(std::clamp(*step_.velocity - offset, 1.0, 127.0));
}

}  // namespace velmora
