#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include "VelmoraCore/Song/Pattern.h"

namespace velmora {

/// One cell of the piano roll's grid, a pitch and a quarter beat: the place of the keyboard's cursor.
struct PianoRollCell {
  int pitch = 60;
  int step = 0;  ///< in quarter beats from the pattern's start

  double startBeat() const { return step * stepLengthBeats; }
  double endBeat() const { return startBeat() + stepLengthBeats; }
  static PianoRollCell of(const Note& note);

  /// The newest note that reaches into the cell; null if there is none.
  const Note* note(const Pattern& pattern) const;

  bool operator==(const PianoRollCell&) const = default;
};

/// Where pitches, beats and notes lie in the piano roll, in points from its top left corner, and what lies at
/// a point. Two octaves show at a time.
struct PianoRollGeometry {
  static constexpr int highestOctave = 10;
  static constexpr int highestPitch = 127;
  static constexpr double handleWidth = 14;    ///< of the end by which a note is resized
  static constexpr double trailingWidth = 24;  ///< beyond the pattern's end

  int lowerPitch = 48;
  int upperPitch = 71;
  double pointsPerBeat = 160;
  double rowHeight = 18;
  double keyWidth = 48;

  /// Two octaves from the C of an octave, 0 to 10, fewer at the upper end.
  void showOctave(int octave);
  bool shows(int pitch) const { return lowerPitch <= pitch && pitch <= upperPitch; }
  int rowCount() const { return upperPitch - lowerPitch + 1; }
  QSizeF contentSize(const Pattern& pattern) const;

  double x(double beat) const { return keyWidth + pointsPerBeat * beat; }
  double y(int pitch) const { return rowHeight * (upperPitch - pitch); }  ///< the top of its row
  double beat(double x) const { return (x - keyWidth) / pointsPerBeat; }
  int pitch(double y) const { return upperPitch - static_cast<int>(y / rowHeight); }

  /// Whether notes can be there: right of the keys, on a row.
  bool isOnGrid(QPointF point) const;

  QRectF noteRect(const Note& note) const;
  QRectF cellRect(const PianoRollCell& cell) const;

  /// The newest note at a point, null if there is none; left and top edges belong to it, the others don't.
  const Note* noteAt(QPointF point, const Pattern& pattern) const;
  bool isOnHandle(QPointF point, const Note& note) const;

  /// The cell moved within the rows and the pattern.
  PianoRollCell moved(const PianoRollCell& cell, int steps, int semitones, const Pattern& pattern) const;
};

}  // namespace velmora
