#pragma once

#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/Arrangement/ToolbarButton.h"

namespace velmora {

/// The button whose menu adds a track of any kind.
class AddTrackMenu final : public ToolbarButton {
 public:
  static constexpr int leastHeight = 44;

  explicit AddTrackMenu(AppModel& model, QWidget* parent = nullptr);
};

}  // namespace velmora
