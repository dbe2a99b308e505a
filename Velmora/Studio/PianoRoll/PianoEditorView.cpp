#include "Velmora/Studio/PianoRoll/PianoEditorView.h"

#include <QMainWindow>
#include <QVBoxLayout>
#include <algorithm>

#include "Velmora/Studio/PianoRoll/AuditionKeyboard.h"
#include "Velmora/Studio/PianoRoll/NoteInspector.h"
#include "Velmora/Studio/PianoRoll/PianoRollCanvasView.h"
#include "Velmora/Studio/PianoRoll/PianoRollScrollArea.h"
#include "Velmora/Studio/PianoRoll/PianoToolbar.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int regularHeight = 500;  // of the window's content; lower is compact

int contentHeight(const QWidget& view) {
  const auto* main = qobject_cast<const QMainWindow*>(view.window());
  return main && main->centralWidget() ? main->centralWidget()->height() : view.window()->height();
}

}  // namespace

PianoEditorView::PianoEditorView(AppModel& model, UUID patternID, UUID trackID, QWidget* parent)
    : QWidget(parent),
      commands_(model, patternID, trackID),
      trackID_(trackID),
      listener_([this] { refresh(); }, model.song, model.selectedNoteID) {
  toolbar_ = makeToolbar();
  roll_ = makeRoll();
  inspector_ = new NoteInspector(commands_, this);
  keyboard_ = new AuditionKeyboard(model, trackID, octave_ * 12, Theme::accent, this);
  keyboard_->setObjectName("piano.keys");
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(0);
  column->addWidget(toolbar_);
  column->addWidget(roll_, 1);
  column->addWidget(inspector_);
  column->addWidget(keyboard_);
  setOctave(octave_);
  refresh();
}

/// The parts go before the commands that they use.
PianoEditorView::~PianoEditorView() {
  qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
}

PianoToolbar* PianoEditorView::makeToolbar() {
  return new PianoToolbar(
      {.setPreset = [this](SynthPreset preset) { commands_.model().setSynthPreset(preset, trackID_); },
       .setOctave = [this](int octave) { setOctave(octave); },
       .setEditsNotes = [this](bool editsNotes) { canvas_->setEditsNotes(editsNotes); },
       .flipKeyboard =
           [this] {
             keyboardVisible_ = !showsKeyboard();
             placeKeyboard();
           },
       .addNote = [this] { addNote(); },
       .zoomOut = [this] { zoom(&PianoRollZoom::out); },
       .zoomIn = [this] { zoom(&PianoRollZoom::in); },
       .deleteNote = [this] { commands_.removeSelected(); }},
      this);
}

PianoRollScrollArea* PianoEditorView::makeRoll() {
  canvas_ = new PianoRollCanvasView(commands_);
  auto* roll = new PianoRollScrollArea(canvas_, this);
  canvas_->onOctave = [this](int octaves) { setOctave(octave_ + octaves); };
  canvas_->onZoom = [this](float factor, double x) {
    zoom_.scale(factor);
    roll_->setPointsPerBeat(zoom_.pointsPerBeat(), x);
  };
  canvas_->onPinch = [this](float factor, double x) {
    zoom_.magnification *= factor;
    roll_->setPointsPerBeat(zoom_.pointsPerBeat(), x);
  };
  canvas_->onPinchEnd = [this] { zoom_.endPinch(); };
  return roll;
}

void PianoEditorView::refresh() {
  const Track* track = commands_.track();
  if (track && track->kind.isSynth()) toolbar_->showPreset(*track->kind.preset());
  if (track) keyboard_->setColor(Theme::color(track->color));
  toolbar_->setCanDelete(commands_.selectedNote());
  refreshInspector();
}

/// When it appears, it takes height from the roll but leaves the note in view.
void PianoEditorView::refreshInspector() {
  const bool wasVisible = inspector_->isVisible();
  inspector_->refresh();
  if (wasVisible || !inspector_->isVisible()) return;
  layout()->activate();
  const Note& note = *commands_.selectedNote();
  if (canvas_->roll().shows(note.pitch)) canvas_->onReveal(canvas_->roll().noteRect(note));
}

void PianoEditorView::setOctave(int octave) {
  octave_ = std::clamp(octave, 0, PianoRollGeometry::highestOctave);
  toolbar_->showOctave(octave_);
  canvas_->showOctave(octave_);
  keyboard_->setLowerPitch(octave_ * 12);
}

/// The C in the middle of the view, at the pattern's start.
void PianoEditorView::addNote() {
  commands_.add(std::min(octave_ * 12 + 12, PianoRollGeometry::highestPitch), 0);
  if (const Note* added = commands_.selectedNote()) canvas_->moveCursorTo(added->id);
}

void PianoEditorView::zoom(void (PianoRollZoom::*change)()) {
  (zoom_.*change)();
  roll_->setPointsPerBeat(zoom_.pointsPerBeat());
}

// The keyboard

PianoEditorView::SizeClass PianoEditorView::verticalSizeClass() const {
  return contentHeight(*this) < regularHeight ? SizeClass::compact : SizeClass::regular;
}

bool PianoEditorView::showsKeyboard() const {
  return keyboardVisible_.value_or(verticalSizeClass() != SizeClass::compact);
}

void PianoEditorView::placeKeyboard() {
  keyboard_->setVisible(showsKeyboard());
  toolbar_->showKeyboardVisible(showsKeyboard());
}

void PianoEditorView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  placeKeyboard();
}

void PianoEditorView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  placeKeyboard();
}

}  // namespace velmora
