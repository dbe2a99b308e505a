#pragma once

#include <QFont>
#include <QPainter>
#include <QString>
#include <cstdint>

#include "Velmora/Studio/TransportBar/TransportLayout.h"

namespace velmora {

/// How a readout looks: a large number with its caption above or below, on the bar's ground.
struct ReadoutFace {
  enum class Order : std::uint8_t { captionFirst, numberFirst };

  QString caption;
  Order order = Order::captionFirst;
  SizeClass sizeClass = SizeClass::regular;
  QString number{};

  /// The width that the number needs.
  int numberWidth() const;
  /// Fills the whole of the size.
  void paint(QPainter& painter, const QSize& size) const;

 private:
  QFont numberFont() const;
};

}  // namespace velmora
