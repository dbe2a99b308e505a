#pragma once

#include <QAbstractScrollArea>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/StepGrid/StepColumnLabels.h"
#include "Velmora/Studio/StepGrid/StepGridCanvas.h"
#include "Velmora/Studio/StepGrid/StepGridHeader.h"
#include "Velmora/Studio/StepGrid/StepPlayhead.h"
#include "Velmora/Studio/StepGrid/StepRowLabels.h"
#include "Velmora/Theme/TextLabel.h"

namespace velmora {

/// The editor of a drum pattern: eight rows of sounds by the sixteen steps of a bar, a bar a page.
///
/// Shows the pattern as it is in the model; only the page and a running gesture are the view's own. Where the
/// pane is too small the cells scroll, and the names and beats stay beside them.
class StepGridView final : public QAbstractScrollArea {
 public:
  /// The model must outlive it. Shows no cells once the pattern is gone.
  StepGridView(AppModel& model, const UUID& patternID, QWidget* parent = nullptr);

  int page() const { return page_; }
  StepGridCanvas& canvas() { return canvas_; }
  StepPlayhead& playhead() { return playhead_; }

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void wire();
  void refresh();
  void showPage(const Pattern& pattern);
  void turnPage(int pages);
  void layOut();
  void placeParts();
  void updateScrollBars();
  void reveal(const QRect& rect);

  AppModel& model_;
  const UUID patternID_;
  int page_ = 0;
  StepGridHeader header_;
  StepColumnLabels columns_;
  StepRowLabels rows_;
  StepGridCanvas canvas_;
  TextLabel footer_;
  StepPlayhead playhead_;
  ChangeListener listener_;
};

}  // namespace velmora
