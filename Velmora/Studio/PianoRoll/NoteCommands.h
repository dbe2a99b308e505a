#pragma once

#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/PianoRoll/BriefKey.h"

namespace velmora {

/// What can be done to the notes of one pattern, each a command of the model on the grid of a quarter beat. A
/// note that is added or moved is heard briefly.
class NoteCommands {
 public:
  NoteCommands(AppModel& model, UUID patternID, UUID trackID)
      : model_(model), patternID_(patternID), trackID_(trackID), heard_(model, trackID) {}

  AppModel& model() const { return model_; }

  // Read afresh from the model; null once they are gone, and valid until the next edit.
  const Pattern* pattern() const { return model_.song().pattern(patternID_); }
  const Track* track() const { return model_.song().track(trackID_); }
  const Note* note(const UUID& noteID) const;
  const Note* selectedNote() const;

  void select(const UUID& noteID) { model_.selectNote(noteID); }
  /// Adds a note of a quarter beat and selects it.
  void add(int pitch, double startBeat);
  void edit(const UUID& noteID, const NoteEdit& edit);
  void transpose(const UUID& noteID, int semitones);
  void shift(const UUID& noteID, double beats);
  void lengthen(const UUID& noteID, double beats);
  void setVelocity(const UUID& noteID, int velocity) { edit(noteID, {.velocity = velocity}); }
  void remove(const UUID& noteID);
  void removeSelected() { model_.deleteSelectedNote(); }

 private:
  AppModel& model_;
  const UUID patternID_;
  const UUID trackID_;
  BriefKey heard_;
};

}  // namespace velmora
