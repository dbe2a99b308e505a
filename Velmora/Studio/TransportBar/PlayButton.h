#pragma once

#include <functional>

#include "Velmora/Studio/TransportBar/TransportLayout.h"
#include "Velmora/Theme/PaintedButton.h"
#include "Velmora/Theme/PressFeedback.h"

namespace velmora {

/// The button that plays and pauses; lit while the transport runs.
class PlayButton final : public PaintedButton {
 public:
  PlayButton(std::function<void()> action, QWidget* parent);

  void setPlaying(bool isPlaying);
  void setSizeClass(SizeClass sizeClass);

  /// The light that falls beside the button, for its parent to paint below it; nothing while it is dark.
  void paintLight(QPainter& painter) const;
  /// The place of that light in the parent.
  QRect lightRect() const;

  QSize sizeHint() const override { return {TransportLayout::playWidth, TransportLayout::buttonSize}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void showLabel();

  bool isPlaying_ = false;
  SizeClass sizeClass_ = SizeClass::regular;
  PressFeedback press_{*this};
};

}  // namespace velmora
