#pragma once

#include <QColor>
#include <QRect>
#include <QString>
#include <QWidget>
#include <vector>

namespace velmora::testing {

/// A run of text as a widget painted it.
struct PaintedText {
  QString words;
  QRect place;   ///< what shows of it, in the widget
  QColor color;  ///< with the painter's opacity
  int pixels;    ///< the font's size
};

/// All text that the widget and its children paint themselves. What comes from a pixmap isn't seen.
std::vector<PaintedText> paintedTexts(QWidget& widget);

/// The contrast ratio of text of `color`, which may be translucent, on an opaque ground: 1 to 21, by the
/// relative luminances of the Web Content Accessibility Guidelines.
double contrast(const QColor& color, const QColor& ground);

}  // namespace velmora::testing
