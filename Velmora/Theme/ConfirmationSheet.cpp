#include "Velmora/Theme/ConfirmationSheet.h"

#include <algorithm>

namespace velmora {

ConfirmationSheet::ConfirmationSheet(const Question& question, QWidget* parent)
    : Sheet(question.title, parent) {
  setObjectName("confirmation");
  setAccessibleDescription(question.message);
  content().addWidget(makeLabel(question.message, Theme::Text::body));
  TallButton& cancel = addToolbarButton(new TallButton("Cancel"), "confirmation.cancel");
  TallButton& destructive = addToolbarButton(
      new TallButton(question.destructive, {}, {.fill = TallButton::Fill::danger}), "confirmation.accept");
  connect(&cancel, &QAbstractButton::clicked, this, &QDialog::reject);
  connect(&destructive, &QAbstractButton::clicked, this, &QDialog::accept);
  for (TallButton* answer : {&cancel, &destructive}) answer->setMinimumWidth(answer->sizeHint().width());
  cancel.setFocus();
  setFixedWidth(std::max(380, minimumSizeHint().width()));
}

}  // namespace velmora
