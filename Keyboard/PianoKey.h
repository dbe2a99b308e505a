#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>

#include "Tonic/Pitch.h"

class QPainter;

namespace keyboard {

enum class KeyState { idle, active };

/// The paint of a piano's keys; lengths in points.
struct PianoKeyLook {
  QColor activeColor{0xFF, 0x9E, 0x66};
  QColor naturalColor{255, 255, 255, 217};
  QColor darkColor{0x17, 0x18, 0x1C};
  QColor gapColor = Qt::transparent;  ///< parts a black key from the white ones under it
  QColor labelColor = Qt::black;
  QFont labelFont{};
  double inset = 1;
  double cornerRadius = 3;
  double labelPadding = 4;
};

/// Draws one key of a piano in its frame; each C carries its name, C4 the middle one.
struct PianoKey {
  PianoKeyLook look{};

  void operator()(QPainter& painter, const QRectF& frame, tonic::Pitch pitch, KeyState state) const;
};

}  // namespace keyboard
