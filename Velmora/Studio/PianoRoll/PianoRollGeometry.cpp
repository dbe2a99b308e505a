#include "Velmora/Studio/PianoRoll/PianoRollGeometry.h"

#include <algorithm>
#include <cmath>
#include <ranges>

namespace velmora {

namespace {

bool contains(const QRectF& rect, QPointF point) {
  return rect.left() <= point.x() && point.x() < rect.right() && rect.top() <= point.y() &&
         point.y() < rect.bottom();
}

/// The last that fits, or null.
template <class Fits>
const Note* newest(const Pattern& pattern, const Fits& fits) {
  const auto& notes = pattern.notes.items();
  const auto found = std::find_if(notes.rbegin(), notes.rend(), fits);
  return found == notes.rend() ? nullptr : &*found;
}

}  // namespace

PianoRollCell PianoRollCell::of(const Note& note) {
  return {note.pitch, static_cast<int>(std::floor(note.startBeat / stepLengthBeats))};
}

const Note* PianoRollCell::note(const Pattern& pattern) const {
  return newest(pattern, [this](const Note& note) {
    return note.pitch == pitch && note.startBeat < endBeat() &&
           note.startBeat + note.durationBeats > startBeat();
  });
}

void PianoRollGeometry::showOctave(int octave) {
  lowerPitch = octave * 12;
  upperPitch = std::min(lowerPitch + 23, highestPitch);
}

QSizeF PianoRollGeometry::contentSize(const Pattern& pattern) const {
  return {x(pattern.stepCount() * stepLengthBeats) + trailingWidth, rowHeight * rowCount()};
}

bool PianoRollGeometry::isOnGrid(QPointF point) const {
  return point.x() >= keyWidth && point.y() >= 0 && point.y() < rowHeight * rowCount();
}

QRectF PianoRollGeometry::noteRect(const Note& note) const {
  return {x(note.startBeat), y(note.pitch), pointsPerBeat * note.durationBeats, rowHeight};
}

QRectF PianoRollGeometry::cellRect(const PianoRollCell& cell) const {
  return {x(cell.startBeat()), y(cell.pitch), pointsPerBeat * stepLengthBeats, rowHeight};
}

const Note* PianoRollGeometry::noteAt(QPointF point, const Pattern& pattern) const {
  if (!isOnGrid(point)) return nullptr;
  return newest(pattern, [&](const Note& note) { return contains(noteRect(note), point); });
}

bool PianoRollGeometry::isOnHandle(QPointF point, const Note& note) const {
  return point.x() >= noteRect(note).right() - handleWidth;
}

PianoRollCell PianoRollGeometry::moved(const PianoRollCell& cell, int steps, int semitones,
                                       const Pattern& pattern) const {
  return {std::clamp(cell.pitch + semitones, lowerPitch, upperPitch),
          std::clamp(cell.step + steps, 0, std::max(pattern.stepCount() - 1, 0))};
}

}  // namespace velmora
