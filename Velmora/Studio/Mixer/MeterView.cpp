#include "Velmora/Studio/Mixer/MeterView.h"

#include <QPainter>
#include <chrono>
#include <utility>

#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr auto interval = 50ms;
constexpr double barHeight = 8;
constexpr double textWidth = 56;

}  // namespace

MeterView::MeterView(std::function<float()> peak, QWidget* parent) : QWidget(parent), peak_(std::move(peak)) {
  Spoken::attach(*this, {.role = QAccessible::Indicator, .value = [this] { return reading_.spoken(); }});
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  QFont small = Theme::font(Theme::Text::capitals);
  small.setLetterSpacing(QFont::AbsoluteSpacing, 0);
  setFont(small);
  setAccessibleName("Peak level");
  timer_.setInterval(interval);
  timer_.callOnTimeout(this, [this] { tick(); });
}

void MeterView::setColor(const QColor& color) {
  color_ = color;
  update();
}

void MeterView::tick() {
  const MeterReading now = MeterReading::of(peak_(), gain_);
  if (now == reading_) return;
  reading_ = now;
  update();
}

void MeterView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const QRectF track(0, (height() - barHeight) / 2, width() - textWidth, barHeight);
  painter.setBrush(Qt::black);
  painter.drawRoundedRect(track, barHeight / 2, barHeight / 2);
  if (reading_.fraction > 0) {
    QRectF bar = track;
    bar.setWidth(track.width() * reading_.fraction);
    painter.setBrush(reading_.isClipping ? Theme::danger : color_);
    painter.drawRoundedRect(bar, barHeight / 2, barHeight / 2);
  }
  painter.setPen(Theme::secondary);
  painter.setFont(font());
  painter.drawText(rect(), Qt::AlignRight | Qt::AlignVCenter, reading_.text());
}

void MeterView::showEvent(QShowEvent*) {
  tick();
  timer_.start();
}

void MeterView::hideEvent(QHideEvent*) { timer_.stop(); }

}  // namespace velmora
