#include "Velmora/Studio/TransportBar/EngineStatusDot.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr int diameter = 8;
constexpr int spacing = 6;
constexpr double lightReach = 4;

struct Look {
  const char* label;
  const char* word;
  QColor color;
};

constexpr Look running{"Audio engine running", "ENGINE", Theme::green};
constexpr Look stopped{"Audio engine stopped", "OFFLINE", Theme::danger};

int wordWidth(const Look& look) {
  return static_cast<int>(
      std::ceil(QFontMetricsF(Theme::font(Theme::Text::capitals)).horizontalAdvance(look.word)));
}

}  // namespace

EngineStatusDot::EngineStatusDot(QWidget* parent) : QWidget(parent) {
  setObjectName("transport.engine");
  Spoken::attach(*this, {.role = QAccessible::StaticText});
  showState();
}

void EngineStatusDot::setRunning(bool isRunning) {
  if (std::exchange(isRunning_, isRunning) != isRunning) showState();
}

void EngineStatusDot::showState() {
  const Look& look = isRunning_ ? running : stopped;
  setAccessibleName(look.label);
  setToolTip(look.label);
  update();
}

void EngineStatusDot::setShowsLabel(bool showsLabel) {
  showsLabel_ = showsLabel;
  update();
}

int EngineStatusDot::contentWidth() const {
  return showsLabel_ ? diameter + spacing + std::max(wordWidth(running), wordWidth(stopped)) : diameter;
}

void EngineStatusDot::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const Look& look = isRunning_ ? running : stopped;
  const QRectF dot(QRect(margin, (height() - diameter) / 2, diameter, diameter));
  paintGlow(painter, dot, diameter / 2.0, Theme::withOpacity(look.color, 0.6), lightReach);
  paintPanel(painter, dot, diameter / 2.0, look.color);
  if (!showsLabel_) return;
  const QFont font = Theme::font(Theme::Text::capitals);
  painter.setFont(font);
  painter.setPen(Theme::secondary);
  const double baseline = std::round((height() + QFontMetricsF(font).capHeight()) / 2);
  painter.drawText(QPointF(dot.right() + spacing, baseline), look.word);
}

}  // namespace velmora
