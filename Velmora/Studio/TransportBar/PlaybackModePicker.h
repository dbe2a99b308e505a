#pragma once

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Theme/SegmentedPicker.h"

namespace velmora {

/// Chooses between looping patterns and playing the song.
class PlaybackModePicker final : public SegmentedPicker {
 public:
  PlaybackModePicker(AppModel& model, QWidget* parent);

 private:
  void showMode();

  AppModel& model_;
  ChangeListener listener_;
};

}  // namespace velmora
