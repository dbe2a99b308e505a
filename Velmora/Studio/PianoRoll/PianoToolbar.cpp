#include "Velmora/Studio/PianoRoll/PianoToolbar.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "Velmora/Studio/PianoRoll/PianoRollGeometry.h"
#include "Velmora/Studio/PianoRoll/Stepper.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int margin = 8;
constexpr int spacing = 8;
constexpr int iconSize = 18;

QString textOf(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString octaveText(int octave) { return PianoToolbar::tr("Octave %1").arg(octave - 1); }

}  // namespace

struct PianoToolbar::Button {
  enum class Shows { symbolAndText, symbol };

  QString name;
  QString symbol;
  QString text;
  const std::function<void()>& act;
  Shows shows = Shows::symbolAndText;
};

PianoToolbar::PianoToolbar(Actions actions, QWidget* parent)
    : QWidget(parent), actions_(std::move(actions)), row_(new QHBoxLayout(this)) {
  using enum Button::Shows;
  row_->setContentsMargins(margin, 0, margin, 0);
  row_->setSpacing(spacing);
  row_->setSizeConstraint(QLayout::SetNoConstraint);
  addPresets();
  addOctave();
  addSwitch();
  keyboard_ = addButton({"piano.keyboard", "pianokeys", tr("Show Keyboard"), actions_.flipKeyboard});
  addButton({"piano.add", "plus", tr("Add Note"), actions_.addNote});
  addButton({"piano.zoomOut", "minus.magnifyingglass", tr("Zoom Out"), actions_.zoomOut, symbol});
  addButton({"piano.zoomIn", "plus.magnifyingglass", tr("Zoom In"), actions_.zoomIn, symbol});
  delete_ = addButton({"piano.delete", "trash", tr("Delete Note"), actions_.deleteNote});
  row_->addStretch();
  measure();
}

void PianoToolbar::addPresets() {
  presets_ = new QComboBox(this);
  presets_->setObjectName("piano.preset");
  presets_->setAccessibleName(tr("Synth preset"));
  presets_->setToolTip(tr("Synth preset"));
  presets_->setFocusPolicy(Qt::TabFocus);
  for (const SynthPreset preset : allSynthPresets()) presets_->addItem(textOf(label(preset)));
  connect(presets_, &QComboBox::activated, this,
          [this](int index) { actions_.setPreset(allSynthPresets()[static_cast<std::size_t>(index)]); });
  row_->addWidget(presets_);
}

void PianoToolbar::addOctave() {
  octave_ = new Stepper(tr("Octave"), {0, PianoRollGeometry::highestOctave}, this);
  octave_->setObjectName("piano.octave");
  octave_->setWidestText(octaveText(0));
  octave_->onChange = actions_.setOctave;
  row_->addWidget(octave_);
}

void PianoToolbar::addSwitch() {
  auto* edit = new QToolButton(this);
  edit->setObjectName("piano.edit");
  edit->setText(tr("Edit"));
  edit->setToolTip(tr("Turn off to scroll the piano roll without editing notes"));
  edit->setAccessibleDescription(edit->toolTip());
  edit->setCheckable(true);
  edit->setChecked(true);
  edit->setFocusPolicy(Qt::TabFocus);
  connect(edit, &QToolButton::toggled, this, [this](bool isOn) { actions_.setEditsNotes(isOn); });
  row_->addWidget(edit);
}

QToolButton* PianoToolbar::addButton(const Button& button) {
  auto* tool = new QToolButton(this);
  tool->setObjectName(button.name);
  tool->setText(button.text);
  tool->setAccessibleName(button.text);
  tool->setToolTip(button.text);
  tool->setIcon(Theme::symbolIcon(button.symbol, Theme::text, iconSize));
  tool->setIconSize({iconSize, iconSize});
  tool->setAutoRaise(true);
  tool->setFocusPolicy(Qt::TabFocus);
  connect(tool, &QToolButton::clicked, this, [&act = button.act] { act(); });
  if (button.shows == Button::Shows::symbolAndText) worded_.push_back(tool);
  row_->addWidget(tool);
  return tool;
}

void PianoToolbar::showPreset(SynthPreset preset) {
  const auto presets = allSynthPresets();
  presets_->setCurrentIndex(static_cast<int>(std::ranges::find(presets, preset) - presets.begin()));
}

void PianoToolbar::showOctave(int octave) { octave_->show(octave, octaveText(octave)); }

void PianoToolbar::showKeyboardVisible(bool isVisible) {
  const QString text = isVisible ? tr("Hide Keyboard") : tr("Show Keyboard");
  if (keyboard_->text() == text) return;
  keyboard_->setText(text);
  keyboard_->setAccessibleName(text);
  keyboard_->setToolTip(text);
  measure();
}

void PianoToolbar::setCanDelete(bool canDelete) { delete_->setEnabled(canDelete); }

// Words or symbols

int PianoToolbar::widthWith(Qt::ToolButtonStyle style) {
  for (QToolButton* button : worded_) button->setToolButtonStyle(style);
  row_->invalidate();
  return row_->minimumSize().width();
}

void PianoToolbar::measure() {
  symbolsWidth_ = widthWith(Qt::ToolButtonIconOnly);
  wordsWidth_ = widthWith(Qt::ToolButtonTextBesideIcon);
  updateGeometry();
  fit();
}

void PianoToolbar::fit() {
  widthWith(width() < wordsWidth_ ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
}

void PianoToolbar::resizeEvent(QResizeEvent*) { fit(); }

void PianoToolbar::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(0, height() - 1, width(), 1, Theme::lineWeak);
}

}  // namespace velmora
