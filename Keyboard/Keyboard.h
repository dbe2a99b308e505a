#pragma once

#include <QAccessible>
#include <QWidget>
#include <functional>
#include <map>
#include <optional>

#include "Keyboard/KeyboardLayout.h"
#include "Keyboard/KeyboardModel.h"
#include "Keyboard/PianoKey.h"

class QEventPoint;
class QTouchEvent;

namespace keyboard {

/// An on-screen keyboard: played with fingers, the mouse, the computer's keys or a screen reader.
///
/// Notes sound while a key is held; sliding goes from key to key. Everything held ends when the keyboard is
/// hidden, or its focus or its window's activation goes. Deleting it calls nothing: the owner ends what
/// sounds. Main thread.
class Keyboard : public QWidget {
  Q_OBJECT

 public:
  /// Draws one key.
  using Content = std::function<void(QPainter&, const QRectF& frame, tonic::Pitch, KeyState)>;

  explicit Keyboard(const KeyboardLayout& layout, QWidget* parent = nullptr);

  void onNotes(KeyboardModel::NoteOn noteOn, KeyboardModel::NoteOff noteOff);
  void setContent(Content content);
  void setLatching(bool latching);

  const KeyboardLayout& keyboardLayout() const { return layout_; }
  void setKeyboardLayout(const KeyboardLayout& layout);  ///< ends all notes

  const KeyboardModel& model() const { return model_; }
  QRectF frameOf(tonic::Pitch pitch) const;  ///< empty if the key isn't shown

  /// Plays a key for a moment; one that sounds already stays as it is.
  void press(tonic::Pitch pitch);
  void releaseAll();

  /// The key that the arrow keys have reached and that Space and Return play.
  tonic::Pitch currentPitch() const { return currentPitch_; }
  void setCurrentPitch(tonic::Pitch pitch);

  QSize sizeHint() const override { return {540, 96}; }
  QSize minimumSizeHint() const override { return {180, 44}; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;

 private:
  void touch(const QTouchEvent& event);
  void follow(const QEventPoint& finger);
  void locationsChanged();
  void showActive();
  void placeKeys();
  void tellKey(QAccessible::Event what, tonic::Pitch pitch);
  void tellPressed(tonic::Pitch pitch);

  KeyboardLayout layout_;
  KeyboardModel model_;
  Content content_;
  tonic::Pitch currentPitch_;
  std::optional<tonic::Pitch> heldPitch_;  // by Space or Return
  std::optional<QPointF> mouse_;           // while its button is down
  std::map<int, QPointF> fingers_;         // by the touch point's number
  tonic::PitchSet shownPitches_;
};

}  // namespace keyboard
