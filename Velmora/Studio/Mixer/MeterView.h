#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "Velmora/Studio/Mixer/MeterReading.h"

namespace velmora {

/// A level bar with its decibels. Reads the peak 20 times a second while it is on screen, and repaints only
/// when what it shows has changed.
class MeterView final : public QWidget {
 public:
  /// `peak` gives the latest peak; 0 where there is no meter.
  explicit MeterView(std::function<float()> peak, QWidget* parent = nullptr);

  void setColor(const QColor& color);
  void setGain(float gain) { gain_ = gain; }

  const MeterReading& reading() const { return reading_; }

  QSize sizeHint() const override { return {120, 16}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void tick();

  const std::function<float()> peak_;
  QColor color_;
  float gain_ = 1;
  MeterReading reading_;
  QTimer timer_;
};

}  // namespace velmora
