#pragma once

#include <QWidget>

#include "Velmora/Model/AppModel.h"

namespace velmora {

/// What stands in for the arrangement of a song without tracks.
class EmptyArrangement final : public QWidget {
 public:
  explicit EmptyArrangement(AppModel& model, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace velmora
