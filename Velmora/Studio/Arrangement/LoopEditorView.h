#pragma once

#include <QWidget>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Arrangement/BeatStepper.h"

namespace velmora {

/// The content of the popover that sets the song's loop.
class LoopEditorView final : public QWidget {
 public:
  explicit LoopEditorView(AppModel& model, QWidget* parent = nullptr);

 private:
  void showLoop();

  AppModel& model_;
  BeatStepper start_{"Start beat: "};
  BeatStepper end_{"End beat: ", " (exclusive)"};
  ChangeListener listener_;
};

}  // namespace velmora
