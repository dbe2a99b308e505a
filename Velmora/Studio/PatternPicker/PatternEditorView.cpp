#include "Velmora/Studio/PatternPicker/PatternEditorView.h"

#include <QPainter>
#include <utility>

#include "Velmora/Studio/PatternPicker/EditorPlaceholder.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

PatternEditorView::PatternEditorView(AppModel& model, PatternEditors editors, QWidget* parent)
    : QWidget(parent),
      model_(model),
      editors_(std::move(editors)),
      picker_(model, this),
      listener_([this] { refresh(); }, model.song, model.selectedTrackID) {
  column_.setContentsMargins(0, 0, 0, 0);
  column_.setSpacing(1);  // the line under the picker
  column_.addWidget(&picker_);
  setLayout(&column_);
  refresh();
}

PatternEditorView::Content PatternEditorView::wantedContent() const {
  using Kind = Content::Kind;
  const Track* const track = model_.selectedTrack();
  if (!track) return {};
  if (track->kind.isAudio()) return {Kind::audio, track->id};
  const Pattern* const pattern = model_.selectedPattern();
  if (!pattern) return {};
  return {track->kind.isDrums() ? Kind::stepGrid : Kind::pianoRoll, track->id, pattern->id};
}

void PatternEditorView::refresh() {
  const Content wanted = wantedContent();
  if (content_ == wanted) return;
  content_ = wanted;
  if (editor_) {
    editor_->hide();
    editor_->deleteLater();
  }
  editor_ = make(wanted);
  column_.addWidget(editor_, 1);
}

QWidget* PatternEditorView::make(const Content& content) {
  switch (content.kind) {
    case Content::Kind::audio:
      return makeAudio(content.trackID);
    case Content::Kind::stepGrid:
      return editors_.stepGrid(content.patternID, content.trackID, this);
    case Content::Kind::pianoRoll:
      return editors_.pianoRoll(content.patternID, content.trackID, this);
    case Content::Kind::placeholder:
      break;
  }
  return makePlaceholder();
}

QWidget* PatternEditorView::makePlaceholder() {
  return new EditorPlaceholder(
      {.text = "Choose an instrument track, or add drums to start a beat.", .button = "Add Drums"},
      [this] { model_.addTrack(TrackKind::drums()); }, this);
}

QWidget* PatternEditorView::makeAudio(const UUID& trackID) {
  if (editors_.audio) return editors_.audio(trackID, this);
  return new EditorPlaceholder(
      {.symbol = "waveform",
       .title = "Add Some Audio",
       .text = "Record a take or import an audio file. Your clip appears at the playhead."},
      {}, this);
}

void PatternEditorView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::surface);
  painter.fillRect(0, picker_.geometry().bottom() + 1, width(), 1, Theme::line);
}

}  // namespace velmora
