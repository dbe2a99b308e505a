#include "Velmora/Studio/Arrangement/SelectedClipPanel.h"

#include <QHBoxLayout>
#include <QMenu>
#include <utility>

#include "Velmora/Studio/Parts/TrackSymbol.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

SelectedClipPanel::SelectedClipPanel(AppModel& model, QWidget* parent)
    : QWidget(parent), model_(model), moveMenu_(move_.addMenu()) {
  setObjectName("arrangement.selectedClip");
  setAccessibleName("Selected clip");
  start_.setObjectName("arrangement.clip.start");
  length_.setObjectName("arrangement.clip.beats");
  move_.setObjectName("arrangement.clip.move");
  edit_.setObjectName("arrangement.clip.edit");
  placeParts();
  start_.onChange = [this](double beat) { change({.startBeat = beat}); };
  length_.onChange = [this](double beats) { change({.lengthBeats = beats}); };
  connect(&moveMenu_, &QMenu::aboutToShow, this, [this] { fillMoveMenu(); });
  connect(&edit_, &QAbstractButton::clicked, this, [this] { editPattern(); });
}

/// Where all is too wide, the heading gives way first.
void SelectedClipPanel::placeParts() {
  heading_.setMinimumWidth(1);
  auto* const row = new QHBoxLayout(this);
  row->addWidget(&heading_);
  row->addWidget(&start_);
  row->addSpacing(4);
  row->addWidget(&length_);
  row->addStretch(1);
  row->addWidget(&move_);
  row->addWidget(&edit_);
  setRoom(Room::ample);
}

const Clip* SelectedClipPanel::clip() const {
  return model_.selectedClipID() ? model_.song().clip(*model_.selectedClipID()) : nullptr;
}

bool SelectedClipPanel::showSelection() {
  const Clip* shown = clip();
  if (!shown) return false;
  start_.show(shown->startBeat, "Start: " + beatText(shown->startBeat));
  length_.show(shown->lengthBeats, "Beats: " + beatText(shown->lengthBeats));
  move_.setEnabled(!otherTracks(*shown).empty());
  edit_.setVisible(shown->source.isPattern());
  return true;
}

void SelectedClipPanel::setRoom(Room room) {
  if (std::exchange(room_, room) == room) return;
  const bool isTight = room == Room::tight;
  edit_.setLabelShown(isTight ? CommandButton::Label::hidden : CommandButton::Label::shown);
  const int margin = isTight ? 8 : 12;
  layout()->setContentsMargins(margin, 0, margin, 0);
  layout()->setSpacing(isTight ? 6 : 8);
}

void SelectedClipPanel::change(const ClipEdit& edit) {
  if (const Clip* shown = clip()) model_.changeClip(shown->id, edit);
}

std::vector<const Track*> SelectedClipPanel::otherTracks(const Clip& clip) const {
  std::vector<const Track*> others;
  const Track* own = model_.song().track(clip.trackID);
  for (const Track& track : model_.song().tracks) {
    if (own && track.id != own->id && track.kind.family() == own->kind.family()) others.push_back(&track);
  }
  return others;
}

void SelectedClipPanel::fillMoveMenu() {
  moveMenu_.clear();
  const Clip* shown = clip();
  if (!shown) return;
  for (const Track* track : otherTracks(*shown)) {
    const QIcon icon = Theme::symbolIcon(TrackSymbol::name(track->kind), Theme::color(track->color));
    const QString name = QString::fromStdString(track->name).replace('&', "&&");
    moveMenu_.addAction(icon, name, this, [this, trackID = track->id] { change({.trackID = trackID}); });
  }
}

void SelectedClipPanel::editPattern() {
  const Clip* shown = clip();
  if (!shown) return;
  const UUID trackID = shown->trackID;
  const UUID patternID = shown->source.id;
  model_.selectTrack(trackID);
  model_.selectPattern(patternID, trackID);
  model_.setWorkspace(Workspace::pattern);
}

}  // namespace velmora
