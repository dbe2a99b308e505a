#pragma once

#include <QObject>
#include <QPixmap>
#include <QRect>
#include <QWidget>
#include <array>
#include <cstdint>
#include <functional>

#include "Velmora/Theme/FrameTicker.h"
#include "VelmoraCore/Render/TransportController.h"

namespace velmora {

/// The playhead over the lanes or in the ruler, painted by the widget that it stands in. It moves with the
/// display while it plays, and has only the few pixels drawn again that it leaves and takes.
class PlayheadMarker final : public QObject {
 public:
  enum class Style : std::uint8_t { line, rulerMarker };

  /// A line is as high as its host; both outlive the marker.
  PlayheadMarker(const TransportController& transport, Style style, QWidget& host);

  std::function<void()> onFrame = [] {};  ///< of the display, while it plays and is seen

  /// To be called when it starts, stops or has jumped.
  void follow(bool isPlaying);
  void place(double pointsPerBeat, double scrollX);

  /// The last thing that its host paints.
  void paint(QPainter& painter, const QRect& dirty);

  bool eventFilter(QObject* host, QEvent* event) override;

 private:
  static constexpr int phases = 4;  // places within a pixel, each with its stamp

  void look();
  void run();
  double reach() const;  // to both sides of the playhead
  QRect frame() const;
  const QPixmap& stamp(double middle, int phase);

  const TransportController& transport_;
  const Style style_;
  QWidget& host_;
  double pointsPerBeat_ = 48;
  double scrollX_ = 0;
  double x_ = -1000;  // in the host, on a phase
  bool isPlaying_ = false;
  std::array<QPixmap, phases> stamps_;
  FrameTicker frames_{[this] {
    onFrame();
    look();
  }};
};

}  // namespace velmora
