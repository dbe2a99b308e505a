#pragma once

#include <QWidget>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Arrangement/ArrangementCanvas.h"
#include "Velmora/Studio/Arrangement/ArrangementGestures.h"
#include "Velmora/Studio/Arrangement/ArrangementState.h"
#include "Velmora/Studio/Arrangement/ArrangementToolbar.h"
#include "Velmora/Studio/Arrangement/EmptyArrangement.h"
#include "Velmora/Studio/Arrangement/FileDrop.h"
#include "Velmora/Studio/Arrangement/RulerCanvas.h"
#include "Velmora/Studio/Arrangement/SelectedClipPanel.h"
#include "Velmora/Studio/Arrangement/TrackHeaderColumn.h"

namespace velmora {

/// The timeline workspace: toolbar, track headers, ruler and lanes. Ruler, lanes and headers stand where one
/// scroll offset puts them. What it knows beyond the model is lost with it.
class ArrangementView final : public QWidget {
 public:
  /// The model outlives the view.
  explicit ArrangementView(AppModel& model, QWidget* parent = nullptr);
  ~ArrangementView() override;

  const TimelineViewport& viewport() const { return state_.viewport(); }

 protected:
  bool event(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void connectToolbar();
  void openLoopEditor();
  void present();
  void presentSong();
  void followTransport();
  void followPlayhead();
  void showPlayhead();
  void placeParts();
  void showParts();
  bool hasRoomForPanelInToolbar() const;
  void revealHeader(const QRect& inList);

  AppModel& model_;
  ArrangementState state_;
  ArrangementGestures gestures_;
  bool showsPanel_ = false;
  double followedBeat_ = 0;  // where the playhead was seen last

  ArrangementToolbar toolbar_{this};
  TrackHeaderColumn headers_;
  RulerCanvas ruler_;
  ArrangementCanvas canvas_;
  SelectedClipPanel panel_;
  EmptyArrangement empty_;
  FileDrop fileDrop_;
  ChangeListener songListener_;
  ChangeListener transportListener_;
};

}  // namespace velmora
