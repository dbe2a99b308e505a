#pragma once

#include <QWidget>
#include <optional>
#include <vector>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/Arrangement/BeatText.h"
#include "Velmora/Theme/CommandButton.h"
#include "Velmora/Theme/TextLabel.h"

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
  TextLabel heading_{"Selected clip", Theme::Text::caption, Theme::secondary};
  Stepper start_{"Start", timelineRange};
  Stepper length_{"Beats", timelineRange};
  CommandButton move_{"Move to Track"};
  CommandButton edit_{"Edit Pattern", "pianokeys"};
  QMenu& moveMenu_;
};

}  // namespace velmora
