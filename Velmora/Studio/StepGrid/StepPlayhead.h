#pragma once

#include <QPixmap>
#include <QWidget>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/StepGrid/StepGridGeometry.h"
#include "Velmora/Theme/FrameTicker.h"

namespace velmora {

/// The frame over the step that sounds. It is as large as its column and moves from step to step: only these
/// two columns are repainted. Looks at the transport at display rate while it plays, and stands still
/// otherwise.
class StepPlayhead final : public QWidget {
 public:
  /// The model must outlive it; the parent is the canvas with the cells.
  StepPlayhead(AppModel& model, const UUID& patternID, QWidget* parent);

  void setPage(int firstStep, const StepGridGeometry& geometry);

  /// The column of the page that it marks; empty if another page or no step sounds.
  std::optional<int> column() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void refresh();
  void place();
  void paintMark();

  AppModel& model_;
  const UUID patternID_;
  int firstStep_ = 0;
  StepGridGeometry geometry_;
  QPixmap mark_;
  FrameTicker frames_{[this] { place(); }};
  ChangeListener listener_;
};

}  // namespace velmora
