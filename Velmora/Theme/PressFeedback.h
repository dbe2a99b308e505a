#pragma once

#include <QVariantAnimation>

class QAbstractButton;
class QPainter;
class QRectF;

namespace velmora {

/// How far a painted button has gone down, eased out over 0.1 s in both directions. The button owns it as a
/// member and is repainted while it moves.
class PressFeedback {
 public:
  explicit PressFeedback(QAbstractButton& button);

  /// From 0, at rest, to 1, pressed.
  double amount() const { return amount_; }

  /// Shrinks what is painted from here on towards the middle, to 0.85 when pressed.
  void scaleAbout(QPainter& painter, const QRectF& rect) const;

 private:
  void moveTo(double amount);

  QAbstractButton& button_;
  QVariantAnimation animation_;
  double amount_ = 0;
};

}  // namespace velmora
