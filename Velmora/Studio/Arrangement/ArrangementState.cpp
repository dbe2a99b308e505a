#include "Velmora/Studio/Arrangement/ArrangementState.h"

#include <algorithm>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Studio/Arrangement/ShownLoop.h"

namespace velmora {

ArrangementState::ArrangementState(AppModel& model) : model_(model) {
  viewport_.footHeight = ArrangementGeometry::headerFootHeight;
  refresh();
}

void ArrangementState::refresh() {
  updatePreview();
  const Song& song = shownSong();
  viewport_.trackCount = static_cast<int>(song.tracks.size());
  viewport_.timelineBeats = std::max(shownLoop(song).endBeat, song.songLengthBeats());
  viewport_.scrollTo(viewport_.scrollOffset);
  changed();
}

void ArrangementState::changed() {
  if (onChange) onChange();
}

std::optional<ClipChange> ArrangementState::dragChange() {
  if (!drag_) return {};
  return drag_->change(model_.song(), lanes(), viewport_.pointsPerBeat());
}

void ArrangementState::beginDrag(const QPointF& content) {
  previewMaker_ = maker_;
  drag_ = {content, content};
}

void ArrangementState::dragTo(const QPointF& content) {
  if (!drag_) return;
  drag_->current = content;
  refresh();
}

void ArrangementState::endDrag() {
  drag_.reset();
  refresh();
}

/// A drag's points lie on beats, wherever those move.
void ArrangementState::keepDragInPlace(double stretch) {
  if (!drag_ || stretch == 1) return;
  drag_->start.rx() *= stretch;
  drag_->current.rx() *= stretch;
}

void ArrangementState::updatePreview() {
  const auto change = dragChange();
  preview_ = change ? std::optional(change->previewed(model_.song())) : std::nullopt;
}

}  // namespace velmora
