#pragma once

#include <functional>

#include "Velmora/Theme/IconButton.h"

namespace velmora {

/// A button of the transport bar: a tinted symbol in a frame of 44 by 44.
class TransportButton final : public IconButton {
 public:
  TransportButton(const QString& symbol, const QString& label, const QColor& tint,
                  std::function<void()> action, QWidget* parent);
};

}  // namespace velmora
