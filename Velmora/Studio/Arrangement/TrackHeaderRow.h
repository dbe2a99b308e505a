#pragma once

#include <functional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/Parts/KnobWithCaption.h"
#include "Velmora/Theme/PaintedButton.h"
#include "Velmora/Theme/ToggleChip.h"

namespace velmora {

/// A track's header beside its lane: a press selects the track; chips and knobs mix it.
class TrackHeaderRow final : public PaintedButton {
 public:
  struct Content {
    Track track;
    bool isSelected = false;
    bool showsKnobs = true;
    bool showsMixControls = true;

    bool operator==(const Content&) const = default;
  };

  TrackHeaderRow(AppModel& model, const Content& content, QWidget* parent = nullptr);

  std::function<void(int)> onStep;  ///< an arrow key asks for the neighbour above, -1, or below, 1

  void show(const Content& content);
  using QWidget::show;

  const UUID& trackID() const { return content_.track.id; }

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void wire(AppModel& model);
  void addDeleteAction(AppModel& model);
  void showTrack();
  void placeControls();
  void paintTexts(QPainter& painter) const;

  Content content_;
  ToggleChip mute_;
  ToggleChip solo_;
  KnobWithCaption volume_;
  KnobWithCaption pan_;
};

}  // namespace velmora
