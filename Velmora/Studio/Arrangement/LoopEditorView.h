#pragma once

#include <QWidget>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Arrangement/BeatText.h"

namespace velmora {

/// The content of the popover that sets the song's loop.
class LoopEditorView final : public QWidget {
 public:
  explicit LoopEditorView(AppModel& model, QWidget* parent = nullptr);

 private:
  void showLoop();

  AppModel& model_;
  Stepper start_{"Start beat", timelineRange};
  Stepper end_{"End beat", timelineRange};
  ChangeListener listener_;
};

}  // namespace velmora
