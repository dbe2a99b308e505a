#pragma once

#include <QPainter>

#include "Velmora/Studio/PianoRoll/NoteStamps.h"
#include "Velmora/Studio/PianoRoll/PianoRollScene.h"

namespace velmora {

/// Paints a piano roll in one pass: only what touches the dirty rectangle. Made for one paint.
class PianoRollPainter {
 public:
  PianoRollPainter(QPainter& painter, const PianoRollGeometry& roll, const PianoRollScene& scene,
                   NoteStamps& stamps, const QRectF& dirty);

  void paint();

 private:
  void paintRow(int pitch, const QRectF& row);
  void paintRows(double left, double right);
  void paintGrid();
  void paintPastEnd();
  void paintNotes();
  void paintNote(const QRectF& rect, const Note& note, int pitch);
  void paintBody(const QRectF& frame, const NoteStamps::Body& body);
  void paintShortBody(const QRectF& frame, const NoteStamps::Body& body);
  void paintOutline(const QRectF& frame);
  void paintCursor();
  void paintKeys();

  void paintLine(QRectF line, const QColor& color);

  QPainter& painter_;
  const PianoRollGeometry& roll_;
  const PianoRollScene& scene_;
  NoteStamps& stamps_;
  const QRectF dirty_;
  const double scale_;
};

}  // namespace velmora
