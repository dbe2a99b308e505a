#pragma once

#include "Velmora/Theme/Sheet.h"

namespace velmora {

/// The page of something that comes with the online services.
class UpcomingView : public Sheet {
 public:
  UpcomingView(const QString& title, QWidget* parent);
};

}  // namespace velmora
