#include "Controls/SmallKnob.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <numbers>

#include "Controls/AccessibleKnob.h"
#include "Controls/KnobGeometry.h"

namespace controls {

namespace {

using namespace std::chrono_literals;

constexpr auto announcementInterval = 100ms;
constexpr float fine = 0.1F;
constexpr float wholeRange = std::numeric_limits<float>::infinity();

struct KeyStep {
  int key;
  float steps;
};

constexpr KeyStep keySteps[] = {
    {Qt::Key_Up, 1},
    {Qt::Key_Right, 1},
    {Qt::Key_Down, -1},
    {Qt::Key_Left, -1},
    {Qt::Key_PageUp, SmallKnob::stepsOfPage},
    {Qt::Key_PageDown, -SmallKnob::stepsOfPage},
    {Qt::Key_Home, -wholeRange},
    {Qt::Key_End, wholeRange},
};

float fineness(Qt::KeyboardModifiers modifiers) { return modifiers.testFlag(Qt::ShiftModifier) ? fine : 1; }

/// The steps that a key stands for; none if it isn't the knob's.
std::optional<float> stepsOf(const QKeyEvent& event) {
  if (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) return {};
  const auto* row = std::find_if(std::begin(keySteps), std::end(keySteps),
                                 [&](auto& each) { return each.key == event.key(); });
  if (row == std::end(keySteps)) return {};
  return row->steps * fineness(event.modifiers());
}

void paintFace(QPainter& painter, const QRectF& frame, const KnobLook& look, const QColor& ring) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(look.backgroundColor);
  painter.drawEllipse(frame);
  const double inset = look.ringWidth / 2;
  painter.setPen(QPen(ring, look.ringWidth));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(frame.adjusted(inset, inset, -inset, -inset));
}

void paintPointer(QPainter& painter, const QRectF& frame, double normal, const QColor& color) {
  const KnobGeometry knob{frame};
  const QSizeF size = knob.pointerSize();
  painter.save();
  painter.translate(knob.pointerCenter(normal));
  painter.rotate(KnobGeometry::pointerAngle(normal) * 180 / std::numbers::pi);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawRoundedRect(QRectF({-size.width() / 2, -size.height() / 2}, size), size.width() / 2,
                          size.width() / 2);
  painter.restore();
}

}  // namespace

SmallKnob::SmallKnob(QWidget* parent) : QWidget(parent) {
  AccessibleKnob::install();
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  announcement_.setSingleShot(true);
  announcement_.callOnTimeout(this, [this] { announce(); });
  control_.onStarted = [this] {
    if (onStarted) onStarted();
  };
  control_.onChanged = [this](float value) {
    valueChanged();
    if (onChanged) onChanged(value);
  };
  control_.onEnded = [this] {
    QToolTip::hideText();
    if (onEnded) onEnded(control_.value);
  };
}

QRectF SmallKnob::frame() const {
  const double side = std::min(width(), height());
  return {(width() - side) / 2, (height() - side) / 2, side, side};
}

void SmallKnob::setLook(const KnobLook& look) {
  if (look == look_) return;
  look_ = look;
  update();
}

void SmallKnob::setRange(ClosedRange<float> range) {
  control_.range = range;
  setValue(control_.value);
  update();
}

void SmallKnob::setValue(float value) {
  const float clamped = std::clamp(value, control_.range.lower, control_.range.upper);
  if (!std::isfinite(value) || clamped == control_.value) return;
  control_.value = clamped;
  valueChanged();
}

void SmallKnob::adjustTo(float value) {
  const float before = control_.value;
  setValue(std::clamp(value, control_.range.lower, control_.range.upper));
  if (control_.value == before) return;
  const QPointer<SmallKnob> self = this;
  if (onChanged) onChanged(control_.value);
  if (self && onEnded) onEnded(control_.value);
}

void SmallKnob::stepBy(float steps) {
  const float sum = control_.value + steps * step();
  const float grid = std::round(sum / step()) * step();
  adjustTo(std::abs(sum - grid) < step() / 1000 ? grid : sum);  // many steps must still meet the zero
}

QString SmallKnob::spokenValue() const {
  return valueText ? valueText(control_.value) : QString::number(static_cast<double>(control_.value));
}

void SmallKnob::valueChanged() {
  update();
  if (hasFocus() && !announcement_.isActive()) announcement_.start(announcementInterval);
}

void SmallKnob::announce() {
  QAccessibleValueChangeEvent event(this, control_.value);
  QAccessible::updateAccessibility(&event);
}

void SmallKnob::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(isEnabled() ? 1 : look_.disabledOpacity);
  const QRectF face = frame();
  paintFace(painter, face, look_, hasFocus() ? look_.foregroundColor : look_.ringColor);
  if (isEnabled() && (underMouse() || isDragged())) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(look_.hoverColor);
    painter.drawEllipse(face);
  }
  paintPointer(painter, face, control_.normal(), look_.foregroundColor);
}

bool SmallKnob::event(QEvent* event) {
  if (event->type() == QEvent::Leave) isAimedAt_ = false;
  if (event->type() == QEvent::ShortcutOverride && stepsOf(*static_cast<QKeyEvent*>(event))) {
    event->accept();
    return true;
  }
  return QWidget::event(event);
}

void SmallKnob::drag(QMouseEvent* event) {
  const auto sensitivity = static_cast<double>(fineness(event->modifiers()));
  control_.geometry = TwoDimensionalDrag{sensitivity, sensitivity};
  control_.rect = QRectF({}, frame().size());
  const QPointer<SmallKnob> self = this;
  control_.moveTo(event->position() - frame().topLeft());
  if (self && valueText) QToolTip::showText(event->globalPosition().toPoint(), spokenValue(), this);
}

void SmallKnob::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
  drag(event);
}

void SmallKnob::mouseMoveEvent(QMouseEvent* event) {
  isAimedAt_ = true;
  if (!(event->buttons() & Qt::LeftButton)) return control_.end();  // the release went elsewhere
  if (isDragged()) drag(event);
}

void SmallKnob::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) control_.end();
}

void SmallKnob::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && defaultValue_) adjustTo(*defaultValue_);
}

void SmallKnob::wheelEvent(QWheelEvent* event) {
  const int delta = event->angleDelta().y();
  // Scrolling past a knob must not turn it, nor must zooming or scrolling sideways.
  if (!isAimedAt_ || delta == 0 || event->modifiers() != Qt::NoModifier) return event->ignore();
  const float notches = static_cast<float>(event->inverted() ? -delta : delta) / 120;
  stepBy(notches * static_cast<float>(QApplication::wheelScrollLines()));
}

void SmallKnob::keyPressEvent(QKeyEvent* event) {
  const auto steps = stepsOf(*event);
  if (!steps) return QWidget::keyPressEvent(event);
  stepBy(*steps);
}

void SmallKnob::hideEvent(QHideEvent* event) {
  control_.end();
  QWidget::hideEvent(event);
}

}  // namespace controls
