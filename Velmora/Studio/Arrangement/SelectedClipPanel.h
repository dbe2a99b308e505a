#pragma once

#include <QLabel>
#include <QWidget>
#include <optional>
#include <vector>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/Arrangement/BeatStepper.h"
#include "Velmora/Studio/Arrangement/ToolbarButton.h"

namespace velmora {

/// What can be done to the selected clip without the mouse on it, in one row.
class SelectedClipPanel final : public QWidget {
 public:
  explicit SelectedClipPanel(AppModel& model, QWidget* parent = nullptr);

  /// Shows the selected clip; false, with nothing shown, if there is none.
  bool showSelection();

  /// Tight leaves the words out where a symbol says the same.
  enum class Room { ample, tight };
  void setRoom(Room room);

 private:
  void placeParts();
  const Clip* clip() const;
  std::vector<const Track*> otherTracks(const Clip& clip) const;
  void change(const ClipEdit& edit);
  void fillMoveMenu();
  void editPattern();

  AppModel& model_;
  std::optional<Room> room_;
  QLabel heading_{"Selected clip"};
  BeatStepper start_{"Start: "};
  BeatStepper length_{"Beats: "};
  ToolbarButton move_{"arrangement.clip.move", "Move to Track", {}};
  ToolbarButton edit_{"arrangement.clip.edit", "Edit Pattern", "pianokeys"};
  QMenu& moveMenu_;
};

}  // namespace velmora
