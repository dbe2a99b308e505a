#include "Velmora/Studio/PianoRoll/NoteDrag.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

int movedPitch(const NoteDrag& drag, const Note& note, const PianoRollGeometry& roll) {
  return note.pitch - static_cast<int>(std::round(drag.offset.y() / roll.rowHeight));
}

double toNearestStep(double beats) { return std::round(beats / stepLengthBeats) * stepLengthBeats; }

}  // namespace

std::optional<NoteDrag> NoteDrag::begin(QPointF start, const Pattern& pattern,
                                        const PianoRollGeometry& roll) {
  const Note* note = roll.noteAt(start, pattern);
  if (!note) return {};
  return NoteDrag{note->id, roll.isOnHandle(start, *note) ? Kind::resize : Kind::move};
}

QRectF NoteDrag::rect(const Note& note, const PianoRollGeometry& roll) const {
  QRectF rect = roll.noteRect(note);
  if (kind == Kind::move) return rect.translated(offset);
  rect.setWidth(std::max(rect.width() + offset.x(), roll.pointsPerBeat * stepLengthBeats));
  return rect;
}

int NoteDrag::pitch(const Note& note, const PianoRollGeometry& roll) const {
  if (kind == Kind::resize) return note.pitch;
  return std::clamp(movedPitch(*this, note, roll), 0, PianoRollGeometry::highestPitch);
}

NoteEdit NoteDrag::result(const Note& note, const PianoRollGeometry& roll) const {
  const double beats = offset.x() / roll.pointsPerBeat;
  if (kind == Kind::resize) return {.durationBeats = toNearestStep(note.durationBeats + beats)};
  return {.pitch = movedPitch(*this, note, roll), .startBeat = note.startBeat + beats};
}

}  // namespace velmora
