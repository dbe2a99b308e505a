#pragma once

#include <QPixmap>
#include <QWidget>
#include <functional>

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

  /// Where the playhead is and how it is moved; both live as long as the ruler.
  struct Position {
    std::function<double()> beat;
    std::function<void(double)> seek;
  };

  explicit RulerCanvas(Position position, QWidget* parent = nullptr);

  void show(const Content& content);
  using QWidget::show;

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

  const Position position_;
  Content content_;
  QPixmap picture_;  // of the content at the widget's size; empty while stale
};

}  // namespace velmora
