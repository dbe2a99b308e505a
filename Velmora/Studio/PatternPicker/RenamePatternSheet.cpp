#include "Velmora/Studio/PatternPicker/RenamePatternSheet.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

#include "Velmora/Theme/Theme.h"
#include "VelmoraCore/Song/Text.h"

namespace velmora {

namespace {

constexpr int margin = 20;
constexpr int spacing = 14;
constexpr int leastWidth = 340;

}  // namespace

RenamePatternSheet::RenamePatternSheet(AppModel& model, const Pattern& pattern, QWidget* parent)
    : QDialog(parent),
      model_(model),
      patternID_(pattern.id),
      name_(QString::fromStdString(pattern.name)),
      cancel_("Cancel"),
      save_("Save") {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle("Rename Pattern");
  setMinimumWidth(leastWidth);
  name_.setObjectName("pattern.name");
  name_.setAccessibleName("Pattern name");
  name_.setPlaceholderText("Pattern name");
  name_.selectAll();
  name_.installEventFilter(this);
  save_.setDefault(true);
  const auto enable = [this] { save_.setEnabled(!trimmed(name_.text().toStdString()).empty()); };
  connect(&name_, &QLineEdit::textChanged, this, enable);
  connect(&save_, &QAbstractButton::clicked, this, [this] { save(); });
  connect(&cancel_, &QAbstractButton::clicked, this, &QDialog::reject);
  enable();
  layOut();
  name_.setFocus();
}

void RenamePatternSheet::layOut() {
  auto* const heading = new QLabel(windowTitle());
  heading->setFont(Theme::font(Theme::Text::title));
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(&cancel_);
  buttons->addWidget(&save_);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(margin, margin, margin, margin);
  column->setSpacing(spacing);
  column->addWidget(heading);
  column->addWidget(&name_);
  column->addLayout(buttons);
}

bool RenamePatternSheet::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) model_.isEditingText.set(true);
  if (event->type() == QEvent::FocusOut) model_.isEditingText.set(false);
  return QDialog::eventFilter(watched, event);
}

void RenamePatternSheet::done(int result) {
  name_.removeEventFilter(this);
  model_.isEditingText.set(false);
  QDialog::done(result);
}

void RenamePatternSheet::save() {
  model_.renamePattern(patternID_, name_.text().toStdString());
  accept();
}

}  // namespace velmora
