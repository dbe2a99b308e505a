#include "Velmora/Theme/SymbolIconEngine.h"

#include <QPainter>
#include <QPixmap>

#include "Velmora/Theme/SymbolPainter.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

void SymbolIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) {
  const QColor color = mode == QIcon::Disabled ? Theme::withOpacity(color_, Theme::disabledOpacity) : color_;
  paintSymbolBox(*painter, rect, name_, color, std::min(rect.width(), rect.height()));
}

QPixmap SymbolIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
  QPixmap pixmap(size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  paint(&painter, QRect(QPoint(), size), mode, state);
  return pixmap;
}

}  // namespace velmora
