#include "Velmora/Studio/TransportBar/TransportButton.h"

#include <utility>

namespace velmora {

TransportButton::TransportButton(const QString& symbol, const QString& label, const QColor& tint,
                                 std::function<void()> action, QWidget* parent)
    : IconButton(symbol, label, parent) {
  setTint(tint);
  connect(this, &QAbstractButton::clicked, this, [action = std::move(action)] { action(); });
}

}  // namespace velmora
