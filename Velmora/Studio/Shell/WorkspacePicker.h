#pragma once

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Theme/SegmentedPicker.h"

namespace velmora {

/// The choice of the workspace in front.
class WorkspacePicker : public SegmentedPicker {
 public:
  explicit WorkspacePicker(AppModel& model, QWidget* parent = nullptr);

 private:
  void refresh();

  AppModel& model_;
  ChangeListener listener_;
};

}  // namespace velmora
