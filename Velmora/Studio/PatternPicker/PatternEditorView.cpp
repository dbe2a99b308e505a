#include "Velmora/Studio/PatternPicker/PatternEditorView.h"

#include <QPainter>
#include <QPushButton>
#include <utility>

#include "Velmora/Theme/Placeholder.h"
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
      return editors_.audio(content.trackID, this);
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
  auto* const addDrums = new QPushButton("Add Drums");
  connect(addDrums, &QAbstractButton::clicked, this, [this] { model_.addTrack(TrackKind::drums()); });
  return new Placeholder({.text = "Choose an instrument track, or add drums to start a beat."}, addDrums,
                         this);
}

void PatternEditorView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::surface);
  painter.fillRect(0, picker_.geometry().bottom() + 1, width(), 1, Theme::line);
}

}  // namespace velmora
