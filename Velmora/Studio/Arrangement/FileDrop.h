#pragma once

#include <QObject>
#include <QPointF>
#include <QWidget>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/Arrangement/ArrangementState.h"

class QDropEvent;

namespace velmora {

/// Takes sound files that are dropped on an arrangement: over the lanes they go to the beat and the track
/// under the pointer, elsewhere to the playhead. A mark shows the place while a file is held.
class FileDrop final : public QObject {
 public:
  /// Hears the events of `view`, in which `canvas` is the lanes.
  FileDrop(AppModel& model, ArrangementState& state, QWidget& view, QWidget& canvas);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// A beat, rounded down as for a pattern that is placed by a click, and a row: the track's or, for a track
  /// that is still to be made, the one below the last.
  struct Place {
    double beat = 0;
    int row = 0;
  };
  std::optional<Place> placeAt(const QPointF& inView);
  AppModel::ImportTarget targetAt(const QPointF& inView);
  void hold(QDropEvent& event);
  void drop(QDropEvent& event, std::filesystem::path file);

  AppModel& model_;
  ArrangementState& state_;
  QWidget& view_;
  QWidget& canvas_;
  QWidget mark_;
};

}  // namespace velmora
