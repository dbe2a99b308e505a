#include "Keyboard/Keyboard.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QTimer>
#include <QTouchEvent>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>
#include <vector>

#include "Keyboard/AccessibleKeyboard.h"

namespace keyboard {

namespace {

using tonic::Pitch;
using namespace std::chrono_literals;

constexpr auto pressLength = 300ms;
constexpr double focusWidth = 2;
constexpr double disabledOpacity = 0.35;

struct KeyStep {
  int key;
  int semitones;
};

constexpr KeyStep keySteps[] = {
    {Qt::Key_Left, -1},   {Qt::Key_Right, 1}, {Qt::Key_Down, -12},     {Qt::Key_Up, 12},
    {Qt::Key_Home, -128}, {Qt::Key_End, 128}, {Qt::Key_PageDown, -12}, {Qt::Key_PageUp, 12},
};

std::optional<int> semitonesOf(const QKeyEvent& event) {
  const auto* row = std::find_if(std::begin(keySteps), std::end(keySteps),
                                 [&](auto& each) { return each.key == event.key(); });
  return row == std::end(keySteps) ? std::nullopt : std::optional(row->semitones);
}

bool isPlayingKey(const QKeyEvent& event) {
  return event.key() == Qt::Key_Space || event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool isOurs(const QKeyEvent& event) {
  return !(event.modifiers() & ~Qt::KeypadModifier) && (isPlayingKey(event) || semitonesOf(event));
}

/// A frame with its edges on whole pixels of the device, so that every gap is equally wide and sharp.
QRectF onPixels(const QRectF& frame, double scale) {
  const auto snapped = [scale](double x) { return std::round(x * scale) / scale; };
  return {QPointF(snapped(frame.left()), snapped(frame.top())),
          QPointF(snapped(frame.right()), snapped(frame.bottom()))};
}

void paintFocus(QPainter& painter, const QRectF& frame, const QColor& color) {
  painter.setPen(QPen(color, focusWidth));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(frame.adjusted(focusWidth, focusWidth, -focusWidth, -focusWidth), focusWidth,
                          focusWidth);
}

}  // namespace

Keyboard::Keyboard(const KeyboardLayout& layout, QWidget* parent)
    : QWidget(parent),
      layout_(layout),
      content_(PianoKey{}),
      currentPitch_(layout_.shownRange().lowerBound()) {
  AccessibleKeyboard::install();
  setAttribute(Qt::WA_AcceptTouchEvents);
  setFocusPolicy(Qt::TabFocus);
  setAccessibleName(tr("Keyboard"));
  placeKeys();
}

void Keyboard::onNotes(KeyboardModel::NoteOn noteOn, KeyboardModel::NoteOff noteOff) {
  model_.noteOn = std::move(noteOn);
  model_.noteOff = std::move(noteOff);
}

void Keyboard::setContent(Content content) {
  content_ = std::move(content);
  update();
}

void Keyboard::setLatching(bool latching) {
  releaseAll();
  model_.latching = latching;
}

void Keyboard::setKeyboardLayout(const KeyboardLayout& layout) {
  if (layout == layout_) return;
  releaseAll();
  layout_ = layout;
  placeKeys();
  currentPitch_ = layout_.shownRange().clamped(currentPitch_.intValue());
  for (const KeyRectInfo& key : model_.keyRectInfos) tellKey(QAccessible::NameChanged, key.pitch);
}

void Keyboard::placeKeys() {
  model_.keyRectInfos = layout_.keyRectInfos(size());
  update();
}

QRectF Keyboard::frameOf(Pitch pitch) const {
  const auto& keys = model_.keyRectInfos;
  const auto key = std::find_if(keys.begin(), keys.end(), [=](auto& each) { return each.pitch == pitch; });
  return key == keys.end() ? QRectF() : key->rect;
}

void Keyboard::locationsChanged() {
  std::vector<QPointF> locations;
  for (const auto& [number, location] : fingers_) locations.push_back(location);
  if (mouse_) locations.push_back(*mouse_);
  model_.setTouchLocations(std::move(locations));
  showActive();
}

void Keyboard::press(Pitch pitch) {
  if (!layout_.shownRange().contains(pitch) || model_.activePitches().contains(pitch)) return;
  model_.activate(pitch);
  showActive();
  QTimer::singleShot(pressLength, this, [this, pitch] {
    if (heldPitch_ == pitch) return;
    model_.deactivate(pitch);
    showActive();
  });
}

void Keyboard::releaseAll() {
  fingers_.clear();
  mouse_.reset();
  heldPitch_.reset();
  for (Pitch pitch : model_.externallyActivatedPitches().array()) model_.deactivate(pitch);
  locationsChanged();
}

void Keyboard::showActive() {
  const tonic::PitchSet active = model_.activePitches();
  const tonic::PitchSet changed = active.subtracting(shownPitches_).united(shownPitches_.subtracting(active));
  shownPitches_ = active;
  for (Pitch pitch : changed.array()) {
    update(frameOf(pitch).toAlignedRect());
    tellPressed(pitch);
  }
}

bool Keyboard::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
      touch(*static_cast<QTouchEvent*>(event));
      return true;
    case QEvent::WindowDeactivate:
    case QEvent::EnabledChange:
      releaseAll();
      break;
    case QEvent::ShortcutOverride:
      event->setAccepted(isOurs(*static_cast<QKeyEvent*>(event)));
      return true;
    default:
      break;
  }
  return QWidget::event(event);
}

void Keyboard::touch(const QTouchEvent& event) {
  for (const QEventPoint& finger : event.points()) follow(finger);
  if (event.type() == QEvent::TouchEnd || event.type() == QEvent::TouchCancel) fingers_.clear();
  locationsChanged();
}

// An event need not name the fingers that rest; one that was let go stays silent until it is pressed again.
void Keyboard::follow(const QEventPoint& finger) {
  if (finger.state() == QEventPoint::Released) fingers_.erase(finger.id());
  if (finger.state() == QEventPoint::Pressed) fingers_[finger.id()] = finger.position();
  if (finger.state() == QEventPoint::Updated && fingers_.count(finger.id()))
    fingers_[finger.id()] = finger.position();
}

void Keyboard::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
  mouse_ = event->position();
  locationsChanged();
}

void Keyboard::mouseMoveEvent(QMouseEvent* event) {
  if (!mouse_) return;
  mouse_ = event->position();
  if (!(event->buttons() & Qt::LeftButton)) mouse_.reset();  // the release went elsewhere
  locationsChanged();
}

void Keyboard::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  mouse_.reset();
  locationsChanged();
}

void Keyboard::keyPressEvent(QKeyEvent* event) {
  if (!isOurs(*event)) return QWidget::keyPressEvent(event);
  if (const auto semitones = semitonesOf(*event)) {
    return setCurrentPitch(layout_.shownRange().clamped(currentPitch_.intValue() + *semitones));
  }
  if (event->isAutoRepeat() || heldPitch_) return;
  heldPitch_ = currentPitch_;
  model_.activate(currentPitch_);
  showActive();
}

void Keyboard::keyReleaseEvent(QKeyEvent* event) {
  if (!isPlayingKey(*event)) return QWidget::keyReleaseEvent(event);
  if (event->isAutoRepeat() || !heldPitch_) return;
  model_.deactivate(*std::exchange(heldPitch_, std::nullopt));
  showActive();
}

void Keyboard::setCurrentPitch(Pitch pitch) {
  currentPitch_ = layout_.shownRange().clamped(pitch.intValue());
  update();
  if (hasFocus()) tellKey(QAccessible::Focus, currentPitch_);
}

void Keyboard::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  setCurrentPitch(currentPitch_);
}

void Keyboard::focusOutEvent(QFocusEvent* event) {
  releaseAll();
  QWidget::focusOutEvent(event);
}

void Keyboard::hideEvent(QHideEvent* event) {
  releaseAll();
  QWidget::hideEvent(event);
}

void Keyboard::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  placeKeys();
}

void Keyboard::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
  for (const KeyRectInfo& key : model_.keyRectInfos) {
    if (!key.rect.intersects(event->rect())) continue;
    const QRectF frame = onPixels(key.rect, devicePixelRatioF());
    const bool isActive = shownPitches_.contains(key.pitch);
    content_(painter, frame, key.pitch, isActive ? KeyState::active : KeyState::idle);
    if (hasFocus() && key.pitch == currentPitch_)
      paintFocus(painter, frame, palette().color(QPalette::Highlight));
  }
}

void Keyboard::tellKey(QAccessible::Event what, Pitch pitch) {
  QAccessibleEvent event(this, what);
  event.setChild(layout_.indexOf(pitch));
  QAccessible::updateAccessibility(&event);
}

void Keyboard::tellPressed(Pitch pitch) {
  QAccessible::State changed;
  changed.pressed = true;
  QAccessibleStateChangeEvent event(this, changed);
  event.setChild(layout_.indexOf(pitch));
  QAccessible::updateAccessibility(&event);
}

}  // namespace keyboard
