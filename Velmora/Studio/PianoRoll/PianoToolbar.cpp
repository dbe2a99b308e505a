#include "Velmora/Studio/PianoRoll/PianoToolbar.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHBoxLayout>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "Velmora/Studio/Parts/Stepper.h"
#include "Velmora/Studio/PianoRoll/PianoRollGeometry.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int margin = 8;
constexpr int spacing = 8;  // around what has an outline

QString textOf(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString octaveText(int octave) { return PianoToolbar::tr("Octave %1").arg(octave - 1); }

}  // namespace

struct PianoToolbar::Button {
  QString name;
  QString symbol;
  QString text;
  const std::function<void()>& act;
  CommandButton::Label label = CommandButton::Label::shown;
};

PianoToolbar::PianoToolbar(Actions actions, QWidget* parent)
    : QWidget(parent), actions_(std::move(actions)), row_(new QHBoxLayout(this)) {
  using enum CommandButton::Label;
  row_->setContentsMargins(margin, 0, margin, 0);
  row_->setSpacing(0);
  row_->setSizeConstraint(QLayout::SetNoConstraint);
  addPresets();
  addOctave();
  addSwitch();
  keyboard_ = addButton({"piano.keyboard", "pianokeys", tr("Show Keyboard"), actions_.flipKeyboard});
  addButton({"piano.add", "plus", tr("Add Note"), actions_.addNote});
  addButton({"piano.zoomOut", "minus.magnifyingglass", tr("Zoom Out"), actions_.zoomOut, hidden});
  addButton({"piano.zoomIn", "plus.magnifyingglass", tr("Zoom In"), actions_.zoomIn, hidden});
  delete_ = addButton({"piano.delete", "trash", tr("Delete Note"), actions_.deleteNote});
  row_->addStretch();
  measure();
}

void PianoToolbar::addPresets() {
  presets_ = new QComboBox(this);
  presets_->setObjectName("piano.preset");
  presets_->setAccessibleName(tr("Synth preset"));
  presets_->view()->setAccessibleName(tr("Synth preset"));
  presets_->setToolTip(tr("Synth preset"));
  presets_->setFocusPolicy(Qt::TabFocus);
  for (const SynthPreset preset : allSynthPresets()) presets_->addItem(textOf(label(preset)));
  connect(presets_, &QComboBox::activated, this, [this](int index) { choosePreset(index); });
  speakPreset();
  row_->addWidget(presets_);
  row_->addSpacing(spacing);
}

/// A combo box by itself would tell its current text for its name.
void PianoToolbar::speakPreset() {
  const Spoken::Adjustment choice{.value = [this] { return presets_->currentIndex(); },
                                  .set = [this](double index) { choosePreset(qRound(index)); },
                                  .maximum = presets_->count() - 1.0};
  Spoken::attach(*presets_, {.role = QAccessible::ComboBox,
                             .value = [this] { return presets_->currentText(); },
                             .press = [this] { presets_->showPopup(); },
                             .adjustment = choice});
}

void PianoToolbar::choosePreset(int index) {
  const int chosen = std::clamp(index, 0, presets_->count() - 1);
  actions_.setPreset(allSynthPresets()[static_cast<std::size_t>(chosen)]);
}

void PianoToolbar::addOctave() {
  octave_ = new Stepper(tr("Octave"), {0, PianoRollGeometry::highestOctave}, this);
  octave_->setObjectName("piano.octave");
  octave_->reserveRoomFor(octaveText(0));
  octave_->onChange = [this](double octave) { actions_.setOctave(qRound(octave)); };
  row_->addWidget(octave_);
  row_->addSpacing(spacing);
}

void PianoToolbar::addSwitch() {
  auto* edit = new CommandButton(tr("Edit"), {}, this);
  edit->setObjectName("piano.edit");
  edit->setToolTip(tr("Turn off to scroll the piano roll without editing notes"));
  edit->setAccessibleDescription(edit->toolTip());
  edit->setCheckable(true);
  edit->setChecked(true);
  connect(edit, &QAbstractButton::toggled, this, [this](bool isOn) { actions_.setEditsNotes(isOn); });
  row_->addWidget(edit);
  row_->addSpacing(spacing);
}

CommandButton* PianoToolbar::addButton(const Button& button) {
  auto* command = new CommandButton(button.text, button.symbol, this);
  command->setObjectName(button.name);
  command->setLabelShown(button.label);
  connect(command, &QAbstractButton::clicked, this, [&act = button.act] { act(); });
  if (button.label == CommandButton::Label::shown) worded_.push_back(command);
  row_->addWidget(command);
  return command;
}

void PianoToolbar::showPreset(SynthPreset preset) {
  const auto presets = allSynthPresets();
  presets_->setCurrentIndex(static_cast<int>(std::ranges::find(presets, preset) - presets.begin()));
}

void PianoToolbar::showOctave(int octave) { octave_->show(octave, octaveText(octave)); }

void PianoToolbar::showKeyboardVisible(bool isVisible) {
  const QString text = isVisible ? tr("Hide Keyboard") : tr("Show Keyboard");
  if (keyboard_->text() == text) return;
  keyboard_->setContent(text, "pianokeys");
  measure();
}

void PianoToolbar::setCanDelete(bool canDelete) { delete_->setEnabled(canDelete); }

// Words or symbols

void PianoToolbar::setWordsShown(CommandButton::Label label) {
  for (CommandButton* button : worded_) button->setLabelShown(label);
  row_->invalidate();
}

void PianoToolbar::measure() {
  setWordsShown(CommandButton::Label::hidden);
  symbolsWidth_ = row_->sizeHint().width();
  setWordsShown(CommandButton::Label::shown);
  wordsWidth_ = row_->sizeHint().width();
  updateGeometry();
  fit();
}

void PianoToolbar::fit() {
  setWordsShown(width() < wordsWidth_ ? CommandButton::Label::hidden : CommandButton::Label::shown);
}

void PianoToolbar::resizeEvent(QResizeEvent*) { fit(); }

void PianoToolbar::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(0, height() - 1, width(), 1, Theme::lineWeak);
}

}  // namespace velmora
