#include "Velmora/Studio/Shell/RenameSheet.h"

namespace velmora {

RenameSheet::RenameSheet(AppModel& model, QWidget* parent)
    : Sheet("Rename Project", parent), model_(model), name_(QString::fromStdString(model.song().name)) {
  setObjectName("rename");
  name_.setObjectName("rename.name");
  name_.setAccessibleName("Project name");
  name_.setPlaceholderText("Project name");
  name_.setFont(Theme::font(Theme::Text::body));
  name_.setMinimumSize(340, 40);
  name_.selectAll();
  content().addWidget(&name_);
  TallButton& cancel = addToolbarButton(new TallButton("Cancel"), "rename.cancel");
  TallButton& accept =
      addToolbarButton(new TallButton("Rename", {}, {.fill = TallButton::Fill::accent}), "rename.rename");
  connect(&cancel, &QAbstractButton::clicked, this, &QDialog::reject);
  connect(&accept, &QAbstractButton::clicked, this, [this] { rename(); });
  connect(&name_, &QLineEdit::returnPressed, this, [this] { rename(); });
  name_.setFocus();
}

void RenameSheet::setVisible(bool isVisible) {
  if (!isVisible) editing_.reset();
  if (isVisible && !editing_) editing_.emplace(model_);
  Sheet::setVisible(isVisible);
}

void RenameSheet::rename() {
  model_.renameProject(name_.text().toStdString());
  accept();
}

}  // namespace velmora
