#include "Velmora/Studio/AudioEditor/TakeCard.h"

#include <QAccessible>
#include <QFile>
#include <QFileDialog>
#include <QPainter>
#include <QStandardPaths>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"

namespace velmora {

namespace {

constexpr double radius = 10;
constexpr int inset = 14;
constexpr int gap = 8;
constexpr int leastWidthInOneRow = 720;

using Fill = CommandButton::Fill;

bool isOpen(const QDialog* dialog) { return dialog && dialog->isVisible(); }

}  // namespace

TakeCard::TakeCard(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      line_("Your recorded take is waiting to be saved."),
      retry_("Retry Save", {}, {.fill = Fill::accent}),
      saveOriginal_("Save Original Take", "square.and.arrow.up", {.fill = Fill::raised}),
      discard_("Discard", {}, {.color = Theme::danger}) {
  setObjectName("audio.take");
  setAccessibleName(line_.text());
  Spoken::attach(*this, {.role = QAccessible::AlertMessage});
  retry_.setObjectName("audio.take.retry");
  saveOriginal_.setObjectName("audio.take.saveOriginal");
  discard_.setObjectName("audio.take.discard");
  connect(&retry_, &QAbstractButton::clicked, this, [this] { model_.saveTake(); });
  connect(&saveOriginal_, &QAbstractButton::clicked, this, [this] { chooseCopy(); });
  connect(&discard_, &QAbstractButton::clicked, this, [this] { askToDiscard(); });

  auto* const words = new QHBoxLayout;
  words->setSpacing(gap);
  words->addWidget(new SymbolLabel("record.circle.fill", Theme::record, 15));
  words->addWidget(&line_, 1);
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(gap);
  for (CommandButton* const button : {&retry_, &saveOriginal_, &discard_}) buttons->addWidget(button);
  buttons->addStretch(1);
  row_.setContentsMargins(inset, 6, inset, 6);
  row_.setSpacing(0);
  row_.addLayout(words, 1);
  row_.addLayout(buttons);
  setLayout(&row_);
  hide();
}

void TakeCard::refresh() {
  const bool isWaiting = model_.pendingTake().has_value();
  if (!isWaiting && question_) question_->reject();
  if (!isWaiting && copyDialog_) copyDialog_->reject();
  if (isWaiting == !isHidden()) return;
  setVisible(isWaiting);
  if (!isWaiting) return;
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

bool TakeCard::confirmsDiscard() const { return isOpen(question_); }

void TakeCard::chooseCopy() {
  if (!model_.pendingTake() || isOpen(copyDialog_)) return;
  auto* const dialog = new QFileDialog(window(), "Save Original Take", {}, "Core Audio Format (*.caf)");
  copyDialog_ = dialog;
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setViewMode(QFileDialog::List);
  dialog->setDirectory(QStandardPaths::writableLocation(QStandardPaths::MusicLocation));
  dialog->setDefaultSuffix("caf");
  dialog->selectFile("Recording.caf");
  connect(dialog, &QFileDialog::fileSelected, this,
          [this](const QString& chosen) { saveCopy(QFile::encodeName(chosen).toStdString()); });
  dialog->open();
}

/// The take stays pending: its own file is what the project still needs. The copying goes on if the editor
/// makes way for another.
void TakeCard::saveCopy(const std::filesystem::path& target) {
  if (!model_.pendingTake()) return;
  model_.saveCopy(model_.pendingTake()->url, target, "Could not save the original take: ");
}

void TakeCard::askToDiscard() {
  if (confirmsDiscard()) return;
  question_ = new ConfirmationSheet({.title = "Discard Recorded Take?",
                                     .message = "The unsaved recording will be removed from this device.",
                                     .destructive = "Discard"},
                                    window());
  connect(question_, &QDialog::accepted, this, [this] { model_.discardPendingTake(); });
  question_->open();
}

void TakeCard::resizeEvent(QResizeEvent*) {
  row_.setDirection(width() < leastWidthInOneRow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void TakeCard::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPanel(painter, rect(), radius, Theme::withOpacity(Theme::record, 0.1),
             Theme::withOpacity(Theme::record, 0.45));
}

}  // namespace velmora
