#include "Velmora/Studio/PianoRoll/NoteCommands.h"

namespace velmora {

namespace {

bool isMoved(const Note& before, const Note& after) {
  return before.pitch != after.pitch || before.startBeat != after.startBeat;
}

}  // namespace

const Note* NoteCommands::note(const UUID& noteID) const {
  const Pattern* found = pattern();
  return found ? findByID(found->notes, noteID) : nullptr;
}

const Note* NoteCommands::selectedNote() const {
  const auto& selected = model_.selectedNoteID();
  return selected ? note(*selected) : nullptr;
}

void NoteCommands::add(int pitch, double startBeat) {
  const auto before = model_.selectedNoteID();
  model_.addMelodicNote(patternID_, pitch, startBeat, stepLengthBeats, stepLengthBeats);
  if (const Note* added = selectedNote(); added && added->id != before) heard_.play(added->pitch);
}

void NoteCommands::edit(const UUID& noteID, const NoteEdit& edit) {
  const Note* found = note(noteID);
  if (!found) return;
  const Note before = *found;
  model_.editMelodicPattern(patternID_,
                            [&](Pattern& pattern) { pattern.editNote(before.id, edit, stepLengthBeats); });
  if (const Note* after = note(before.id); after && isMoved(before, *after)) heard_.play(after->pitch);
}

void NoteCommands::transpose(const UUID& noteID, int semitones) {
  if (const Note* found = note(noteID)) edit(noteID, {.pitch = found->pitch + semitones});
}

void NoteCommands::shift(const UUID& noteID, double beats) {
  if (const Note* found = note(noteID)) edit(noteID, {.startBeat = found->startBeat + beats});
}

void NoteCommands::lengthen(const UUID& noteID, double beats) {
  if (const Note* found = note(noteID)) edit(noteID, {.durationBeats = found->durationBeats + beats});
}

void NoteCommands::remove(const UUID& noteID) {
  select(noteID);
  removeSelected();
}

}  // namespace velmora
