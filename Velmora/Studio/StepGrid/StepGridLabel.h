#pragma once

#include <QLabel>

#include "Velmora/Theme/Theme.h"

namespace velmora {

/// A plain text around the grid in one of the theme's fonts.
class StepGridLabel final : public QLabel {
 public:
  StepGridLabel(const QString& text, Theme::Text font, const QColor& color, QWidget* parent)
      : QLabel(text, parent) {
    QPalette colored = palette();
    colored.setColor(QPalette::WindowText, color);
    setPalette(colored);
    setFont(Theme::font(font));
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
  }
};

}  // namespace velmora
