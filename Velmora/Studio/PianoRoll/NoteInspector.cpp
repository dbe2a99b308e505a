#include "Velmora/Studio/PianoRoll/NoteInspector.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QSignalBlocker>
#include <QSlider>

#include "Velmora/Studio/Parts/Stepper.h"
#include "Velmora/Studio/PianoRoll/PianoRollGeometry.h"
#include "Velmora/Studio/PianoRoll/PitchName.h"
#include "Velmora/Theme/IconButton.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int inspectorHeight = 44;
constexpr int margin = 8;
constexpr int groupSpacing = 16;
constexpr int sliderWidth = 120;
constexpr int velocityPage = 10;

QString pitchText(int pitch) { return NoteInspector::tr("Pitch %1").arg(pitchName(pitch)); }
QString velocityText(int velocity) { return NoteInspector::tr("Velocity %1").arg(velocity); }

}  // namespace

NoteInspector::NoteInspector(NoteCommands& commands, QWidget* parent)
    : QWidget(parent), commands_(commands), row_(new QHBoxLayout(this)) {
  setFixedHeight(inspectorHeight);
  row_->setContentsMargins(margin, 0, margin, 0);
  row_->setSpacing(margin);
  addPitch();
  row_->addSpacing(groupSpacing);
  addVelocity();
  row_->addSpacing(groupSpacing);
  addLength("piano.shorten", "arrow.left.to.line", tr("Shorten"), -stepLengthBeats);
  addLength("piano.lengthen", "arrow.right.to.line", tr("Lengthen"), stepLengthBeats);
  row_->addStretch();
  refresh();
}

void NoteInspector::addPitch() {
  pitch_ = new Stepper(tr("Pitch"), {0, PianoRollGeometry::highestPitch}, this);
  pitch_->setObjectName("piano.pitch");
  pitch_->reserveRoomFor(pitchText(1));
  pitch_->onChange = [this](double pitch) { edit({.pitch = qRound(pitch)}); };
  row_->addWidget(pitch_);
}

void NoteInspector::addVelocity() {
  velocityText_ = new QLabel(this);
  velocityText_->setFont(Theme::font(Theme::Text::control));
  velocityText_->setMinimumWidth(QFontMetrics(velocityText_->font()).horizontalAdvance(velocityText(100)));
  velocity_ = new QSlider(Qt::Horizontal, this);
  velocity_->setObjectName("piano.velocity");
  velocity_->setAccessibleName(tr("Note velocity"));
  velocity_->setFocusPolicy(Qt::TabFocus);
  velocity_->setFixedWidth(sliderWidth);
  velocity_->setRange(1, 127);
  velocity_->setPageStep(velocityPage);
  connect(velocity_, &QSlider::valueChanged, this, [this](int value) { edit({.velocity = value}); });
  row_->addWidget(velocityText_);
  row_->addWidget(velocity_);
}

void NoteInspector::addLength(const QString& name, const QString& symbol, const QString& text, double beats) {
  auto* button = new IconButton(symbol, text, this);
  button->setObjectName(name);
  button->setAutoRepeat(true);
  connect(button, &QAbstractButton::clicked, this, [this, beats] {
    if (const Note* note = commands_.selectedNote()) commands_.lengthen(note->id, beats);
  });
  row_->addWidget(button);
}

void NoteInspector::edit(const NoteEdit& edit) {
  if (const Note* note = commands_.selectedNote()) commands_.edit(note->id, edit);
}

void NoteInspector::refresh() {
  const Note* note = commands_.selectedNote();
  if (note) showNote(*note);
  setVisible(note);
}

void NoteInspector::showNote(const Note& note) {
  const QSignalBlocker quiet(velocity_);
  pitch_->show(note.pitch, pitchText(note.pitch));
  velocityText_->setText(velocityText(note.velocity));
  velocity_->setValue(note.velocity);
}

void NoteInspector::paintEvent(QPaintEvent*) { QPainter(this).fillRect(0, 0, width(), 1, Theme::lineWeak); }

}  // namespace velmora
