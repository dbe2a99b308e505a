#pragma once

#include "Velmora/Model/AppModel.h"
#include "Velmora/Theme/CommandButton.h"

namespace velmora {

/// The button whose menu adds a track of any kind.
class AddTrackMenu final : public CommandButton {
 public:
  static constexpr int leastHeight = 44;

  explicit AddTrackMenu(AppModel& model, QWidget* parent = nullptr);
};

}  // namespace velmora
