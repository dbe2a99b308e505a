#include "Velmora/Studio/Shell/ConfirmationSheet.h"

namespace velmora {

ConfirmationSheet::ConfirmationSheet(const Question& question, QWidget* parent)
    : Sheet(question.title, parent) {
  setObjectName("confirmation");
  setAccessibleDescription(question.message);
  content().addWidget(makeLabel(question.message, Theme::Text::body));
  ShellButton& cancel = addToolbarButton(new ShellButton("Cancel"), "confirmation.cancel");
  ShellButton& destructive = addToolbarButton(
      new ShellButton(question.destructive, {}, {.fill = ShellButton::Fill::danger}), "confirmation.accept");
  connect(&cancel, &QAbstractButton::clicked, this, &QDialog::reject);
  connect(&destructive, &QAbstractButton::clicked, this, &QDialog::accept);
  cancel.setFocus();
  setFixedWidth(380);
}

}  // namespace velmora
