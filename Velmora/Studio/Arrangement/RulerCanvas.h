#pragma once

#include <QPixmap>
#include <QWidget>
#include <functional>

#include "Velmora/Studio/Arrangement/PlayheadMarker.h"
#include "Velmora/Studio/Arrangement/TimelineScale.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// The beats and bars over the lanes. A tap, a drag or the arrow keys move the playhead.
class RulerCanvas final : public QWidget {
 public:
  struct Content {
    double contentWidth = 0;
    LoopRange loop;
    double pointsPerBeat = 48;
    double scrollX = 0;

    bool operator==(const Content&) const = default;
  };

  /// `onSeek` moves the playhead; it and the transport live as long as the ruler.
  RulerCanvas(const TransportController& transport, std::function<void(double)> onSeek,
              QWidget* parent = nullptr);

  void show(const Content& content);
  using QWidget::show;

  PlayheadMarker& playhead() { return playhead_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent*) override { update(); }
  void focusOutEvent(QFocusEvent*) override { update(); }

 private:
  TimelineScale scale() const;
  void paintPicture();
  void paintLoop(QPainter& painter) const;
  void paintTicks(QPainter& painter) const;
  void seek(double beat);

  const TransportController& transport_;
  const std::function<void(double)> onSeek_;
  PlayheadMarker playhead_{transport_, PlayheadMarker::Style::rulerMarker, *this};
  Content content_;
  QPixmap picture_;  // of the content at the widget's size; empty while stale
};

}  // namespace velmora
