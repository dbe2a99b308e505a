#include "VelmoraCore/Song/Pattern.h"

#include <algorithm>
#include <cmath>

#include "VelmoraCore/Song/Bounds.h"
#include "VelmoraCore/Song/Limits.h"

namespace velmora {
namespace {

constexpr double stepsPerBeat = 1 / stepLengthBeats;

std::uint8_t clampedPitch(int pitch) { return static_cast<std::uint8_t>(std::clamp(pitch, 0, 127)); }
std::uint8_t clampedVelocity(int velocity) { return static_cast<std::uint8_t>(std::clamp(velocity, 1, 127)); }

bool acceptsGrid(const Pattern& pattern, double gridBeats) {
  return std::isfinite(gridBeats) && gridBeats > 0 && std::isfinite(pattern.lengthBeats) &&
         pattern.lengthBeats >= gridBeats;
}

// A grid finer than the precision of the length could otherwise push a note onto the pattern's very end.
bool liesInside(const Note& note, const Pattern& pattern) {
  return note.startBeat < pattern.lengthBeats && note.durationBeats > 0;
}

/// One cell of the step grid: a pitch and a half-open range of beats.
struct Cell {
  std::uint8_t pitch;
  double startBeat;
  double endBeat;

  bool contains(const Note& note) const {
    return note.pitch == pitch && note.startBeat >= startBeat && note.startBeat < endBeat;
  }
};

std::optional<Cell> cellAt(const Pattern& pattern, DrumSound sound, int step) {
  if (step < 0 || step >= pattern.stepCount()) return {};
  const double startBeat = step * stepLengthBeats;
  return Cell{pitch(sound), startBeat, std::min(startBeat + stepLengthBeats, pattern.lengthBeats)};
}

Note edited(Note note, const NoteEdit& edit, double lengthBeats, double gridBeats) {
  const double working =
      raisedThenLowered(edit.durationBeats.value_or(note.durationBeats), gridBeats, lengthBeats);
  const double wanted = edit.startBeat ? gridBeats * std::round(*edit.startBeat / gridBeats) : note.startBeat;
  const double limit = lengthBeats - (edit.durationBeats ? gridBeats : working);
  note.startBeat = raisedThenLowered(wanted, 0, limit);
  note.durationBeats = std::min(working, lengthBeats - note.startBeat);
  if (edit.pitch) note.pitch = clampedPitch(*edit.pitch);
  if (edit.velocity) note.velocity = clampedVelocity(*edit.velocity);
  return note;
}

}  // namespace

std::optional<UUID> Pattern::insertNote(int pitch, int velocity, double startBeat, double durationBeats,
                                        double gridBeats) {
  if (!std::isfinite(startBeat) || !std::isfinite(durationBeats) || !acceptsGrid(*this, gridBeats)) return {};
  Note note;
  note.startBeat =
      raisedThenLowered(gridBeats * std::floor(startBeat / gridBeats), 0, lengthBeats - gridBeats);
  note.durationBeats = raisedThenLowered(durationBeats, gridBeats, lengthBeats - note.startBeat);
  if (!liesInside(note, *this)) return {};
  note.id = UUID::random();
  note.pitch = clampedPitch(pitch);
  note.velocity = clampedVelocity(velocity);
  notes.write().push_back(note);
  return note.id;
}

void Pattern::editNote(const UUID& noteID, const NoteEdit& edit, double gridBeats) {
  const Note* note = findByID(notes, noteID);
  if (!note || !acceptsGrid(*this, gridBeats)) return;
  if (!isFiniteIfGiven(edit.startBeat) || !isFiniteIfGiven(edit.durationBeats)) return;
  const Note changed = edited(*note, edit, lengthBeats, gridBeats);
  if (liesInside(changed, *this)) replaceOrAppend(notes, changed);
}

void Pattern::removeNote(const UUID& noteID) {
  eraseIf(notes, [id = noteID](const Note& note) { return note.id == id; });
}

int Pattern::stepCount() const {
  if (!std::isfinite(lengthBeats) || lengthBeats <= 0) return 0;
  return static_cast<int>(
      std::min<double>(std::ceil(lengthBeats * stepsPerBeat), limits::mostStepsInPattern));
}

std::optional<std::uint8_t> Pattern::stepVelocity(DrumSound sound, int step) const {
  std::optional<std::uint8_t> loudest;
  const auto cell = cellAt(*this, sound, step);
  if (!cell) return loudest;
  for (const Note& note : notes) {
    if (cell->contains(note)) loudest = std::max(loudest.value_or(0), note.velocity);
  }
  return loudest;
}

void Pattern::toggleStep(DrumSound sound, int step, int velocity) {
  const auto cell = cellAt(*this, sound, step);
  if (!cell || eraseIf(notes, [&](const Note& note) { return cell->contains(note); }) > 0) return;
  const double durationBeats = std::min(stepLengthBeats, lengthBeats - cell->startBeat);
  notes.write().push_back(
      {UUID::random(), cell->pitch, cell->startBeat, durationBeats, clampedVelocity(velocity)});
}

void Pattern::setStepVelocity(DrumSound sound, int step, int velocity) {
  const auto cell = cellAt(*this, sound, step);
  if (!cell) return;
  const std::uint8_t wanted = clampedVelocity(velocity);
  const auto differs = [&](const Note& note) { return cell->contains(note) && note.velocity != wanted; };
  if (std::none_of(notes.begin(), notes.end(), differs)) return;
  for (Note& note : notes.write()) {
    if (cell->contains(note)) note.velocity = wanted;
  }
}

}  // namespace velmora
