#pragma once

#include <QLineEdit>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/TextEditing.h"
#include "Velmora/Theme/Sheet.h"

namespace velmora {

/// Asks for the project's name. The studio's plain keys rest while it is open.
class RenameSheet : public Sheet {
 public:
  RenameSheet(AppModel& model, QWidget* parent);

  void setVisible(bool isVisible) override;

 private:
  void rename();

  AppModel& model_;
  QLineEdit name_;
  std::optional<TextEditing> editing_;
};

}  // namespace velmora
