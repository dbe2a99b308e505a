#pragma once

#include <QColor>
#include <QTimer>
#include <QWidget>
#include <array>
#include <functional>
#include <optional>

#include "Velmora/Studio/Parts/KeyboardLead.h"
#include "Velmora/Studio/StepGrid/DrumStepControl.h"
#include "Velmora/Studio/StepGrid/StepCellPainter.h"
#include "Velmora/Studio/StepGrid/StepGridGeometry.h"
#include "VelmoraCore/Song/Pattern.h"

class QAccessibleEvent;
class QEventPoint;
class QTouchEvent;

namespace velmora {

/// What the grid shows: some steps of a pattern in the track's colour.
struct StepGridPage {
  Pattern pattern{};
  int firstStep = 0;
  QColor color{};
  StepGridGeometry geometry{};

  bool operator==(const StepGridPage&) const = default;
};

/// The cells of one page: paints them all in one pass and leads what happens on them to their controls.
///
/// Knows no model: what shall change is asked for through the functions. Works by mouse, touch, the
/// computer's keys and a screen reader; Escape, a second button or finger and the loss of the focus cancel a
/// press.
class StepGridCanvas final : public QWidget {
 public:
  explicit StepGridCanvas(QWidget* parent = nullptr);

  std::function<void(DrumSound, int step)> onToggle;
  std::function<void(DrumSound, int step, int velocity)> onSetVelocity;
  std::function<void(int pages)> onTurnPage;
  std::function<void(QRect)> onReveal;  ///< the cursor has come here
  std::function<void(QPoint)> onPan;    ///< a finger has moved the page by this

  /// Takes the size of the page. Repaints the cells that differ.
  void setPage(const StepGridPage& page);
  const StepGridPage& page() const { return page_; }
  const StepGridGeometry& grid() const { return page_.geometry; }

  DrumStep step(StepPlace place) const;
  DrumStepControl control(StepPlace place) const;
  /// What the release of the running drag would set.
  std::optional<int> draggedVelocity() const;

  /// The cell that the keys act on.
  StepPlace cursor() const { return cursor_; }
  void moveCursor(StepPlace place);
  /// As if Tab had led here: from now on the keys act on this cell.
  void takeKeyboardFocus(StepPlace place);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  /// A cell under the mouse button or the finger.
  struct Press {
    StepPlace place;
    DrumStepControl control;
  };
  using Velocities = std::array<std::optional<std::uint8_t>, StepGridGeometry::cellCount>;
  struct KeyRow;

  static std::size_t indexOf(StepPlace place) { return StepGridGeometry::indexOnFullPage(place); }
  Velocities readVelocities() const;
  void showDifferences(const Velocities& before);
  bool isShown(StepPlace place) const;

  void beginPress(QPointF point);
  void movePress(QPointF point);
  void endPress(QPointF point);
  void cancelPress();
  void holdPress();
  bool touch(const QTouchEvent& event);
  void moveFinger(const QEventPoint& finger);

  bool runKey(const QKeyEvent& event);
  bool moveAcross(int columns);
  bool moveDown(int rows);
  bool moveToEnd(int column);
  bool turnPage(int pages);
  bool adjustVelocity(int steps);
  bool activate(int);
  bool clear(int);
  bool cancel(int);

  void paintCells(const QRectF& dirty);
  void paintPress(QPainter& painter) const;
  void paintCursor(QPainter& painter) const;
  void paintDraggedVelocity(QPainter& painter) const;
  QRectF bubble() const;

  void showHelp(const QPoint& position, const QPoint& globalPosition);
  void tell(QAccessibleEvent&& event, StepPlace place);
  void tellCursor();
  void tellNames();
  void tellState(StepPlace place);
  void tellValue();

  StepGridPage page_;
  Velocities velocities_;  // of the page's cells
  StepCellPainter cellPainter_;
  StepPlace cursor_;
  KeyboardLead lead_{*this};
  std::optional<Press> press_;
  std::optional<QPointF> panPoint_;  // of the finger that moves the page
  QTimer hold_;
  QTimer announcement_;  // spaces out what a screen reader hears
};

}  // namespace velmora
