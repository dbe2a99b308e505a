#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>

#include "Controls/ClosedRange.h"
#include "Controls/Control.h"
#include "Controls/KnobLook.h"

namespace controls {

/// A round knob: dragged right or up, with the wheel, with the keys or by a screen reader.
///
/// Shift makes a drag and the arrow keys ten times finer; a double click returns to the default. `setValue`
/// never calls back, so that an owner may answer `onChanged` with the value that its model took. Main thread.
class SmallKnob : public QWidget {
  Q_OBJECT

 public:
  explicit SmallKnob(QWidget* parent = nullptr);

  std::function<void()> onStarted;          ///< a drag begins
  std::function<void(float)> onChanged;     ///< each value that the user sets, dragging or not
  std::function<void(float)> onEnded;       ///< the value that a drag or a single step has left
  std::function<QString(float)> valueText;  ///< shown while dragging and read aloud; the number if empty

  float value() const { return control_.value; }
  void setValue(float value);  ///< clamped to the range; what isn't finite is ignored

  ClosedRange<float> range() const { return control_.range; }
  void setRange(ClosedRange<float> range);

  void setDefaultValue(std::optional<float> value) { defaultValue_ = value; }

  /// What an arrow key or a screen reader's action adds; a hundredth of the range unless set.
  float step() const { return step_.value_or(control_.range.length() / 100); }
  void setStep(float step) { step_ = step; }
  static constexpr float stepsOfPage = 10;

  void setLook(const KnobLook& look);

  /// As if the user had set the value.
  void adjustTo(float value);
  void stepBy(float steps);

  bool isDragged() const { return control_.hasStarted(); }
  QString spokenValue() const;
  QSize sizeHint() const override { return {38, 38}; }

 protected:
  /// Where the face lies: the largest square in the middle. A knob with a caption overrides it.
  virtual QRectF frame() const;

  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void drag(QMouseEvent* event);
  void valueChanged();
  void announce();

  Control control_;
  KnobLook look_;
  std::optional<float> defaultValue_;
  std::optional<float> step_;
  bool isAimedAt_ =
      false;  // the pointer was moved onto the knob, rather than the knob scrolled under the pointer
  QTimer announcement_;  // spaces out what a screen reader hears
};

}  // namespace controls
