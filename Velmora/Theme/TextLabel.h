#pragma once

#include <QLabel>

#include "Velmora/Theme/Theme.h"

namespace velmora {

/// A plain text in one of the theme's fonts and colours.
class TextLabel : public QLabel {
 public:
  explicit TextLabel(const QString& text, Theme::Text font = Theme::Text::body,
                     const QColor& color = Theme::text, QWidget* parent = nullptr);
};

/// A symbol alone, to go with text of `size` logical pixels.
class SymbolLabel final : public QLabel {
 public:
  SymbolLabel(const QString& symbol, const QColor& color, int size, QWidget* parent = nullptr);
};

}  // namespace velmora
