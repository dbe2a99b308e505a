#include "Velmora/Theme/TextLabel.h"

#include <QPalette>

namespace velmora {

TextLabel::TextLabel(const QString& text, Theme::Text font, const QColor& color, QWidget* parent)
    : QLabel(text, parent) {
  QPalette colored = palette();
  colored.setColor(QPalette::WindowText, color);
  setPalette(colored);
  setFont(Theme::font(font));
  setTextFormat(Qt::PlainText);
}

SymbolLabel::SymbolLabel(const QString& symbol, const QColor& color, int size, QWidget* parent)
    : QLabel(parent) {
  const QSize box(qRound(1.4 * size), qRound(1.4 * size));
  setPixmap(Theme::symbolIcon(symbol, color, size).pixmap(box, devicePixelRatioF()));
  setAlignment(Qt::AlignCenter);
}

}  // namespace velmora
