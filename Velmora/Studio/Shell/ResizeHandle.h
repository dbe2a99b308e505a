#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "Velmora/Theme/Spoken.h"

namespace velmora {

/// The strip between the panes: dragged with the mouse, stepped with the arrow keys or by a screen reader.
class ResizeHandle : public QWidget {
 public:
  static constexpr double dragDistance = 10;  ///< shorter moves are no drag

  /// `adjustment` is the editor's part of the workspace.
  explicit ResizeHandle(Spoken::Adjustment adjustment, QWidget* parent = nullptr);

  // What a drag has come to, in points downwards.
  std::function<void(double translation)> onDrag;
  std::function<void(double translation)> onDragEnd;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  double translation(const QMouseEvent& event) const;

  const Spoken::Adjustment adjustment_;
  std::optional<double> pressedAt_;  // in the screen's coordinates: the strip moves under the pointer
  bool isDragging_ = false;
};

}  // namespace velmora
