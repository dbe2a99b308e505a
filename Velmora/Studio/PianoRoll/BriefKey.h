#pragma once

#include <QTimer>
#include <optional>

#include "Velmora/Model/AppModel.h"

namespace velmora {

/// Lets a pitch of a track be heard for a moment, one at a time.
class BriefKey {
 public:
  BriefKey(AppModel& model, UUID trackID);
  ~BriefKey() { release(); }
  BriefKey(const BriefKey&) = delete;
  BriefKey& operator=(const BriefKey&) = delete;

  void play(int pitch);
  void release();

 private:
  AppModel& model_;
  const UUID trackID_;
  std::optional<int> pitch_;
  QTimer end_;
};

}  // namespace velmora
