#pragma once

#include "Velmora/Theme/Sheet.h"

namespace velmora {

/// Asks before something is lost: `accepted` is the destructive answer, the other one is "Cancel".
class ConfirmationSheet : public Sheet {
 public:
  struct Question {
    QString title;
    QString message;
    QString destructive;
  };
  ConfirmationSheet(const Question& question, QWidget* parent);
};

}  // namespace velmora
