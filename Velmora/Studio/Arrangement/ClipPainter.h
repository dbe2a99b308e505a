#pragma once

#include <QColor>
#include <QHash>
#include <QPainter>
#include <QPixmap>

#include "Velmora/Studio/Arrangement/LaneData.h"

namespace velmora {

/// A clip at its place in the view: whole pixels from 1.5 points right of a beat line.
struct PlacedClip {
  const ClipBox& box;
  QRectF frame;
  double pointsPerBeat = 48;
  QColor color;
  bool isSelected = false;
};

/// Draws clips fast: bodies and names are made once and then copied.
class ClipPainter {
 public:
  /// To be called before the clips of a frame.
  void begin(double pixelsPerPoint);
  /// Draws what lies in `area`, a part of the view.
  void paint(QPainter& painter, const PlacedClip& clip, const QRectF& area);

 private:
  void paintBody(QPainter& painter, const PlacedClip& clip, const QRectF& area);
  void paintName(QPainter& painter, const PlacedClip& clip, const QRectF& area);
  const QPixmap& body(const PlacedClip& clip, double width);
  const QPixmap& nameOf(const QString& text);

  QHash<quint64, QPixmap> bodies_;  // by colour, width and selection
  QHash<QString, QPixmap> names_;
  double pixelsPerPoint_ = 0;
};

}  // namespace velmora
