#include "Velmora/Studio/PatternPicker/PatternPicker.h"

#include <QHBoxLayout>

#include "Velmora/Studio/Parts/TrackSymbol.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int spacing = 8;
constexpr int sideMargin = 12;

QString text(const std::string& utf8) { return QString::fromStdString(utf8); }

/// Names are the user's: an ampersand in them is no mnemonic.
QAction* addChoice(QMenu& menu, const QString& name, const UUID& id, const std::optional<UUID>& chosen) {
  QAction* const action = menu.addAction(QString(name).replace('&', "&&"));
  action->setCheckable(true);
  action->setChecked(id == chosen);
  return action;
}

PickerButton::Choice trackChoice(const Track* track) {
  if (!track) return {.text = "Choose Track", .spoken = "None"};
  return {TrackSymbol::name(track->kind), text(track->name), text(track->name)};
}

PickerButton::Choice patternChoice(const Pattern* pattern) {
  if (!pattern) return {.text = "No Pattern", .spoken = "None"};
  return {.text = text(pattern->name), .spoken = text(pattern->name)};
}

}  // namespace

PatternPicker::PatternPicker(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      tracks_(
          "Editor track", [this](QMenu& menu) { fillTracks(menu); }, this),
      patterns_(
          "Selected pattern", [this](QMenu& menu) { fillPatterns(menu); }, this),
      play_("Play Patterns", "play.circle", this),
      actions_("ellipsis.circle", "Pattern actions", this),
      actionsOpener_(actions_, [this](QMenu& menu) { fillActions(menu); }),
      listener_([this] { refresh(); }, model.song, model.selectedTrackID) {
  tracks_.setObjectName("editor.track");
  patterns_.setObjectName("editor.pattern");
  actions_.setObjectName("editor.actions");
  play_.setObjectName("editor.play");
  play_.setToolTip("Loop the selected pattern on every unmuted track");
  connect(&play_, &QAbstractButton::clicked, this, [this] { playSelectedPatterns(); });
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(sideMargin, 1, sideMargin, 1);
  row->setSpacing(spacing);
  for (QWidget* const item : std::initializer_list<QWidget*>{&tracks_, &patterns_, &play_, &actions_})
    row->addWidget(item);
  row->addStretch(1);
  refresh();
}

void PatternPicker::refresh() {
  const Track* const track = model_.selectedTrack();
  const Pattern* const pattern = model_.selectedPattern();
  tracks_.setChoice(trackChoice(track));
  patterns_.setChoice(patternChoice(pattern));
  patterns_.setEnabled(pattern);
  play_.setEnabled(pattern);
  actions_.setEnabled(track && !track->kind.isAudio());
}

void PatternPicker::fillTracks(QMenu& menu) {
  for (const Track& track : model_.song().tracks) {
    QAction* const action = addChoice(menu, text(track.name), track.id, model_.selectedTrackID());
    action->setIcon(Theme::symbolIcon(TrackSymbol::name(track.kind)));
    connect(action, &QAction::triggered, this, [this, id = track.id] { model_.selectTrack(id); });
  }
  menu.addSeparator();
  menu.addAction(Theme::symbolIcon("plus"), "Add Drums", this,
                 [this] { model_.addTrack(TrackKind::drums()); });
}

void PatternPicker::fillPatterns(QMenu& menu) {
  const Pattern* const selected = model_.selectedPattern();
  if (!selected) return;
  for (const Pattern& pattern : model_.song().patternsForTrack(selected->trackID)) {
    QAction* const action = addChoice(menu, text(pattern.name), pattern.id, selected->id);
    connect(action, &QAction::triggered, this,
            [this, id = pattern.id, trackID = pattern.trackID] { model_.selectPattern(id, trackID); });
  }
}

void PatternPicker::fillActions(QMenu& menu) {
  const bool hasPattern = model_.selectedPattern();
  menu.addAction(Theme::symbolIcon("plus"), "New Pattern", this, [this] { newPattern(); });
  menu.addAction(Theme::symbolIcon("plus.square.on.square"), "Duplicate Pattern", this,
                 [this] { duplicatePattern(); })
      ->setEnabled(hasPattern);
  menu.addAction(Theme::symbolIcon("pencil"), "Rename Pattern", this, [this] { renamePattern(); })
      ->setEnabled(hasPattern);
}

/// Never stops what plays.
void PatternPicker::playSelectedPatterns() {
  model_.setMode(PlaybackMode::pattern);
  if (!model_.isPlaying()) model_.play();
}

void PatternPicker::newPattern() {
  if (model_.selectedTrackID()) model_.newPattern(*model_.selectedTrackID());
}

void PatternPicker::duplicatePattern() {
  if (const Pattern* const pattern = model_.selectedPattern()) model_.duplicatePattern(pattern->id);
}

void PatternPicker::renamePattern() {
  const Pattern* const pattern = model_.selectedPattern();
  if (!pattern || renaming_) return;
  renaming_ = new RenamePatternSheet(model_, *pattern, this);
  renaming_->open();
}

}  // namespace velmora
