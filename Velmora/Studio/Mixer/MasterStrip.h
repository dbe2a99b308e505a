#pragma once

#include <QWidget>

#include "Velmora/Model/AppModel.h"

namespace velmora {

class KnobWithCaption;

/// The last strip of the mixer: the level of all tracks together, and its volume.
class MasterStrip final : public QWidget {
 public:
  explicit MasterStrip(AppModel& model, QWidget* parent = nullptr);

  void setVolume(float volume);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  KnobWithCaption* volume_;
};

}  // namespace velmora
