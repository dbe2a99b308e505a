#pragma once

#include <QWidget>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/Arrangement/AddTrackMenu.h"
#include "Velmora/Studio/Arrangement/TrackHeaderRow.h"

namespace velmora {

/// The column at the left: its title, then the headers of all tracks and the menu that adds one, which scroll
/// with the lanes.
class TrackHeaderColumn final : public QWidget {
 public:
  enum class Detail : std::uint8_t { full, compact };

  explicit TrackHeaderColumn(AppModel& model, QWidget* parent = nullptr);

  /// The focus has gone to something in the list, which may be out of view.
  std::function<void(const QRect& inList)> onFocused;

  void setDetail(Detail detail);
  void showTracks(const SharedList<Track>& tracks, const std::optional<UUID>& selectedTrackID);
  void scrollTo(int y);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// The rows' common ground, which moves under the window of the column.
  class List final : public QWidget {
   public:
    using QWidget::QWidget;

   protected:
    void paintEvent(QPaintEvent* event) override;
  };

  TrackHeaderRow& rowFor(std::size_t row, const TrackHeaderRow::Content& content);
  void placeRows();
  void stepFrom(const TrackHeaderRow& row, int step);
  void followFocus(const QWidget* focused);

  AppModel& model_;
  Detail detail_ = Detail::full;
  QWidget window_{this};
  List list_{&window_};
  std::vector<TrackHeaderRow*> rows_;  // children of list_, in track order
  AddTrackMenu addTrack_;
};

}  // namespace velmora
