#pragma once

#include "Velmora/Model/AppModel.h"
#include "Velmora/Theme/Placeholder.h"

namespace velmora {

/// What stands in for the arrangement of a song without tracks.
class EmptyArrangement final : public Placeholder {
 public:
  explicit EmptyArrangement(AppModel& model, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace velmora
