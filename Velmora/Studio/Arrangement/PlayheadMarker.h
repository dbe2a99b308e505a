#pragma once

#include <QWidget>
#include <cstdint>
#include <functional>

#include "Velmora/Theme/FrameTicker.h"
#include "VelmoraCore/Render/TransportController.h"

namespace velmora {

/// The playhead over the lanes or in the ruler: a small widget that moves with the display while it plays, so
/// that only its own few pixels are drawn again.
class PlayheadMarker final : public QWidget {
 public:
  enum class Style : std::uint8_t { line, rulerMarker };

  /// A line is as high as its parent; the transport outlives the marker.
  PlayheadMarker(const TransportController& transport, Style style, QWidget* parent);

  std::function<void()> onFrame = [] {};  ///< of the display, while it plays and is seen

  /// To be called when it starts, stops or has jumped.
  void follow(bool isPlaying);
  void place(double pointsPerBeat, double scrollX);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void look();
  void run();
  double reach() const;  // to both sides of the playhead

  const TransportController& transport_;
  const Style style_;
  double pointsPerBeat_ = 48;
  double scrollX_ = 0;
  double x_ = -1000;  // in the parent
  bool isPlaying_ = false;
  FrameTicker frames_{[this] {
    onFrame();
    look();
  }};
};

}  // namespace velmora
