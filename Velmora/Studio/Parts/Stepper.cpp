#include "Velmora/Studio/Parts/Stepper.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <QtMath>
#include <algorithm>

#include "Velmora/Theme/IconButton.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int stepperHeight = 32;
constexpr int buttonWidth = 28;
constexpr int textMargin = 4;
constexpr double symbolSize = 12;

int stepsOf(const QKeyEvent& event) {
  if (event.modifiers() & ~Qt::KeypadModifier) return 0;
  if (event.key() == Qt::Key_Up || event.key() == Qt::Key_Right) return 1;
  return event.key() == Qt::Key_Down || event.key() == Qt::Key_Left ? -1 : 0;
}

}  // namespace

Stepper::Stepper(const QString& label, Range range, QWidget* parent) : QWidget(parent), range_(range) {
  setAccessibleName(label);
  setFocusPolicy(Qt::TabFocus);
  setProperty("keepsEditingKeys", true);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setFont(Theme::font(Theme::Text::control));
  lower_ = makeButton("minus", "Decrease " + label, -1);
  raise_ = makeButton("plus", "Increase " + label, 1);
  Spoken::attach(*this, {.role = QAccessible::SpinBox,
                         .value = [this] { return text_; },
                         .adjustment = Spoken::Adjustment{.value = [this] { return value_; },
                                                          .set = [this](double value) { ask(value); },
                                                          .minimum = range.lowest,
                                                          .maximum = range.highest}});
}

IconButton* Stepper::makeButton(const QString& symbol, const QString& label, int by) {
  auto* button = new IconButton(symbol, label, this);
  button->setSymbolSize(symbolSize);
  button->setFocusPolicy(Qt::NoFocus);
  button->setAutoRepeat(true);
  connect(button, &QAbstractButton::clicked, this, [this, by] { ask(value_ + by); });
  return button;
}

void Stepper::ask(double value) {
  const double wanted = std::clamp(value, range_.lowest, range_.highest);
  if (wanted != value_) onChange(wanted);
}

void Stepper::show(double value, const QString& text) {
  if (value == value_ && text == text_) return;
  value_ = value;
  text_ = text;
  lower_->setEnabled(value > range_.lowest);
  raise_->setEnabled(value < range_.highest);
  reserveRoomFor(text);
  update();
  Spoken::tellValue(*this);
}

void Stepper::reserveRoomFor(const QString& text) {
  const int width = qCeil(QFontMetricsF(font()).horizontalAdvance(text));
  if (width <= textWidth_) return;
  textWidth_ = width;
  updateGeometry();
}

QSize Stepper::sizeHint() const { return {textWidth_ + 2 * (buttonWidth + textMargin), stepperHeight}; }

void Stepper::resizeEvent(QResizeEvent*) {
  lower_->setGeometry(0, 0, buttonWidth, height());
  raise_->setGeometry(width() - buttonWidth, 0, buttonWidth, height());
}

void Stepper::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPanel(painter, rect(), 8, Theme::raised, Theme::line);
  painter.setPen(Theme::text);
  painter.drawText(rect(), Qt::AlignCenter, text_);
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, rect(), 8);
}

void Stepper::keyPressEvent(QKeyEvent* event) {
  const int steps = stepsOf(*event);
  if (steps == 0) return QWidget::keyPressEvent(event);
  ask(value_ + steps);
}

}  // namespace velmora
