#pragma once

#include <QKeyEvent>
#include <functional>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/Arrangement/ArrangementState.h"

namespace velmora {

/// The arrangement from the keyboard: arrows go from clip to clip and from track to track, with Shift they
/// move the selected clip, with Shift and Alt they resize it.
class ClipKeys {
 public:
  ClipKeys(AppModel& model, ArrangementState& state) : model_(model), state_(state) {}

  /// True for a key that was used.
  bool press(const QKeyEvent& event);

 private:
  struct Row;
  static const Row rows[];

  void goToClip(int step);
  void goToEnd(int step);
  void goToTrack(int step);
  void moveClip(int step);
  void moveToTrack(int step);
  void resizeClip(int step);
  void scrollPage(int step);
  void deleteClip(int step);

  const Clip* clip() const;
  std::optional<int> selectedRow() const;
  void select(const ClipBox* clip);
  void change(const ClipEdit& edit);
  void revealSelection();

  AppModel& model_;
  ArrangementState& state_;
};

}  // namespace velmora
