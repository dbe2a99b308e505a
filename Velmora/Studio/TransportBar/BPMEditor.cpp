#include "Velmora/Studio/TransportBar/BPMEditor.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <utility>

#include "Velmora/Studio/TransportBar/TempoText.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

QLabel* makeCaption(const QString& text) {
  auto* const label = new QLabel(text);
  label->setFont(Theme::font(Theme::Text::capitals));
  label->setForegroundRole(QPalette::PlaceholderText);
  return label;
}

QPushButton* makeButton(const QString& title, const QString& name) {
  auto* const button = new QPushButton(title);
  button->setObjectName(name);
  button->setAutoDefault(true);  // Return presses it while it has the focus
  return button;
}

QHBoxLayout* makeRow(const QList<QWidget*>& widgets) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(8);
  for (QWidget* const widget : widgets) row->addWidget(widget);
  return row;
}

}  // namespace

BPMEditor::BPMEditor(AppModel& model) : model_(model), text_(new QLineEdit) {
  setAccessibleName("Tempo");
  setFixedWidth(230);
  text_->setObjectName("tempo.text");
  text_->setAccessibleName("Tempo");
  text_->setFont(Theme::font(Theme::Text::largeDigits));
  text_->setFixedWidth(96);
  auto* const cancelButton = makeButton("Cancel", "tempo.cancel");
  auto* const setButton = makeButton("Set", "tempo.set");
  setButton->setDefault(true);

  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(20, 16, 20, 20);
  column->setSpacing(12);
  column->addWidget(makeCaption("TEMPO"));
  auto* const field = makeRow({text_, makeCaption("BPM")});
  field->addStretch();
  column->addLayout(field);
  column->addLayout(makeRow({cancelButton, setButton}));

  connect(text_, &QLineEdit::returnPressed, this, [this] { set(); });
  connect(setButton, &QAbstractButton::clicked, this, [this] { set(); });
  connect(cancelButton, &QAbstractButton::clicked, this, [this] { dismiss(); });
}

BPMEditor::~BPMEditor() { endEditing(); }

Popover& BPMEditor::open(AppModel& model, QWidget& anchor) {
  return Popover::open(anchor, new BPMEditor(model));
}

void BPMEditor::showEvent(QShowEvent*) {
  isEditing_ = true;
  model_.isEditingText.set(true);
  text_->setText(TempoText::shown(model_.song().bpm));
  text_->selectAll();
  text_->setFocus();
}

void BPMEditor::hideEvent(QHideEvent*) { endEditing(); }

void BPMEditor::set() {
  if (const auto bpm = TempoText::parsed(text_->text())) model_.setBPM(*bpm);
  dismiss();
}

void BPMEditor::dismiss() {
  endEditing();
  window()->close();
}

void BPMEditor::endEditing() {
  if (std::exchange(isEditing_, false)) model_.isEditingText.set(false);
}

}  // namespace velmora
