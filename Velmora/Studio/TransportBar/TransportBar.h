#pragma once

#include <QWidget>
#include <functional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/TransportBar/TransportLayout.h"

namespace velmora {

class BPMReadout;
class EngineStatusDot;
class PlayButton;
class PlaybackModePicker;
class PositionReadout;
class TransportButton;

/// The bar at the foot of the studio: transport buttons, position, tempo, playback mode, engine. Its height
/// follows from its width: one row or, where that is too wide, two lines.
class TransportBar final : public QWidget {
 public:
  explicit TransportBar(AppModel& model, QWidget* parent = nullptr);

  /// For windows whose content is narrower than 700.
  void setCompact(bool isCompact);

  /// What the record button does, both to start and to stop a take; without it the button is disabled.
  void setOnRecord(std::function<void()> onRecord);

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  TransportButton* addButton(const QString& name, const QString& symbol, const QString& label,
                             std::function<void()> action);
  TransportWidths widths() const;
  void applySizeClass();
  void arrange();
  void showState();
  void showRecording();

  AppModel& model_;
  SizeClass sizeClass_ = SizeClass::regular;
  TransportLayout layout_;
  std::function<void()> onRecord_;
  TransportButton* returnToStart_ = nullptr;
  TransportButton* stop_ = nullptr;
  PlayButton* play_ = nullptr;
  TransportButton* record_ = nullptr;
  PositionReadout* position_ = nullptr;
  BPMReadout* tempo_ = nullptr;
  PlaybackModePicker* mode_ = nullptr;
  EngineStatusDot* engine_ = nullptr;
  ChangeListener listener_;
};

}  // namespace velmora
