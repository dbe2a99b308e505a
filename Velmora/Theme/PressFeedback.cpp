#include "Velmora/Theme/PressFeedback.h"

#include <QAbstractButton>
#include <QPainter>

#include "Velmora/Theme/Theme.h"

namespace velmora {

PressFeedback::PressFeedback(QAbstractButton& button) : button_(button) {
  animation_.setEasingCurve(QEasingCurve::OutQuad);
  QObject::connect(&animation_, &QVariantAnimation::valueChanged, &button, [this](const QVariant& value) {
    amount_ = value.toDouble();
    button_.update();
  });
  QObject::connect(&button, &QAbstractButton::pressed, &animation_, [this] { moveTo(1); });
  QObject::connect(&button, &QAbstractButton::released, &animation_, [this] { moveTo(0); });
}

void PressFeedback::scaleAbout(QPainter& painter, const QRectF& rect) const {
  if (amount_ == 0) return;  // stays on whole pixels
  const double scale = 1 - 0.15 * amount_;
  painter.translate(rect.center());
  painter.scale(scale, scale);
  painter.translate(-rect.center());
}

void PressFeedback::moveTo(double amount) {
  animation_.stop();
  animation_.setDuration(Theme::duration(100));
  animation_.setStartValue(amount_);
  animation_.setEndValue(amount);
  animation_.start();
}

}  // namespace velmora
