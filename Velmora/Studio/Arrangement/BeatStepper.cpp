#include "Velmora/Studio/Arrangement/BeatStepper.h"

#include <QHBoxLayout>
#include <QPainter>

#include "Velmora/Studio/Arrangement/BeatText.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"
#include "VelmoraCore/Song/Limits.h"

namespace velmora {

namespace {

constexpr int buttonHeight = 32;

/// "Start: " reads as "Start".
QString nameOf(const QString& before) { return before.trimmed().chopped(1); }

}  // namespace

BeatStepper::BeatStepper(const QString& before, const QString& after, QWidget* parent)
    : QWidget(parent),
      before_(before),
      after_(after),
      lower_("minus", "Decrease " + nameOf(before)),
      raise_("plus", "Increase " + nameOf(before)) {
  setAccessibleName(nameOf(before));
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  text_.setFont(Theme::font(Theme::Text::control));
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  row->addWidget(&text_, 1);
  row->addSpacing(8);
  row->addWidget(&lower_);
  row->addWidget(&raise_);
  makeButton(lower_, -1);
  makeButton(raise_, 1);
  setButtonWidth(34);
  setValue(0);
  Spoken::attach(*this,
                 {.role = QAccessible::SpinBox,
                  .value = [this] { return text(); },
                  .adjustment = Spoken::Adjustment{.value = [this] { return value_; },
                                                   .set = [this](double value) { step(value - value_); },
                                                   .minimum = 0,
                                                   .maximum = limits::longestTimelineBeats,
                                                   .step = 1}});
}

void BeatStepper::makeButton(IconButton& button, double by) {
  button.setSymbolSize(13);
  button.setAutoRepeat(true);
  connect(&button, &QAbstractButton::clicked, this, [this, by] { step(by); });
}

void BeatStepper::setButtonWidth(int width) {
  for (IconButton* button : {&lower_, &raise_}) button->setFixedSize(width, buttonHeight);
}

void BeatStepper::step(double by) {
  if (onChange) onChange(value_ + by);
}

void BeatStepper::setValue(double value) {
  value_ = value;
  text_.setText(before_ + beatText(value) + after_);
}

void BeatStepper::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF buttons = lower_.geometry() | raise_.geometry();
  paintPanel(painter, buttons, 8, Theme::raised, Theme::line);
  painter.fillRect(QRectF(raise_.x(), buttons.top() + 8, 1, buttons.height() - 16), Theme::line);
}

}  // namespace velmora
