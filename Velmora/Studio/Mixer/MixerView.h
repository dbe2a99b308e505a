#pragma once

#include <QScrollArea>
#include <vector>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"

class QHBoxLayout;

namespace velmora {

class ChannelStrip;
class MasterStrip;

/// The mixer: a strip for every track in their order, then the master.
class MixerView final : public QScrollArea {
 public:
  explicit MixerView(AppModel& model, QWidget* parent = nullptr);

  const std::vector<ChannelStrip*>& strips() const { return strips_; }

 private:
  void refresh();
  bool showsTracks(const Song& song) const;
  void makeStrips(const Song& song);

  AppModel& model_;
  QHBoxLayout* row_ = nullptr;
  std::vector<ChannelStrip*> strips_;
  MasterStrip* master_ = nullptr;
  ChangeListener listener_;
};

}  // namespace velmora
