#pragma once

#include <QColor>

#include "Velmora/Theme/PaintedButton.h"

namespace velmora {

/// A chip of 28 by 28 with a short title inside a square of 44 to press. It shows what it is told and never
/// flips by itself: who listens to `clicked` decides.
class ToggleChip final : public PaintedButton {
 public:
  ToggleChip(const QString& title, const QString& label, const QColor& color, QWidget* parent = nullptr);

  bool isOn() const { return isChecked(); }
  void setOn(bool isOn) { setChecked(isOn); }

  QSize sizeHint() const override { return {44, 44}; }

 protected:
  void nextCheckState() override {}
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor color_;
};

}  // namespace velmora
