#include "Velmora/Studio/Arrangement/RulerCanvas.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Studio/Arrangement/BeatText.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"
#include "VelmoraCore/Song/Limits.h"

namespace velmora {

namespace {

constexpr int loopHeight = 3;
constexpr int barTick = 12;
constexpr int beatTick = 6;
constexpr int barBeats = ArrangementGeometry::beatsPerBar;

struct KeyStep {
  int key;
  double beats;
};

constexpr KeyStep keySteps[] = {
    {Qt::Key_Left, -1},
    {Qt::Key_Right, 1},
    {Qt::Key_Down, -1},
    {Qt::Key_Up, 1},
    {Qt::Key_PageDown, -barBeats},
    {Qt::Key_PageUp, barBeats},
    {Qt::Key_Home, -limits::longestTimelineBeats},
};

std::optional<double> beatsOf(const QKeyEvent& event) {
  const auto* row = std::ranges::find(keySteps, event.key(), &KeyStep::key);
  return row == std::end(keySteps) || (event.modifiers() & ~Qt::KeypadModifier) ? std::nullopt
                                                                                : std::optional(row->beats);
}

}  // namespace

RulerCanvas::RulerCanvas(const TransportController& transport, std::function<void(double)> onSeek,
                         QWidget* parent)
    : QWidget(parent), transport_(transport), onSeek_(std::move(onSeek)) {
  setObjectName("arrangement.ruler");
  setAccessibleName("Timeline position");
  setProperty("keepsEditingKeys", true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::TabFocus);
  setFixedHeight(ArrangementGeometry::rulerHeight);
  const auto playhead = [this] { return transport_.playhead(); };
  Spoken::attach(*this,
                 {.role = QAccessible::Slider,
                  .value = [playhead] { return QStringLiteral("Beat %1").arg(beatText(playhead() + 1)); },
                  .adjustment = Spoken::Adjustment{.value = playhead,
                                                   .set = [this](double beat) { seek(beat); },
                                                   .minimum = 0,
                                                   .maximum = limits::longestTimelineBeats,
                                                   .step = 1}});
}

void RulerCanvas::show(const Content& content) {
  if (content == content_) return;
  content_ = content;
  picture_ = {};
  playhead_.place(content.pointsPerBeat, content.scrollX);
  update();
}

TimelineScale RulerCanvas::scale() const {
  return {content_.pointsPerBeat, content_.scrollX, devicePixelRatioF()};
}

void RulerCanvas::seek(double beat) {
  onSeek_(std::max(0.0, beat));
  Spoken::tellValue(*this);
}

/// The playhead passes over the ruler with every frame, while its own picture seldom changes: it is kept.
void RulerCanvas::paintEvent(QPaintEvent* event) {
  if (!isPictureOf(*this, picture_)) paintPicture();
  QPainter painter(this);
  const QRectF dirty = event->rect();
  const double scale = picture_.devicePixelRatio();
  painter.drawPixmap(dirty, picture_, QRectF(dirty.topLeft() * scale, dirty.size() * scale));
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, rect(), 4);
  playhead_.paint(painter, event->rect());
}

void RulerCanvas::paintPicture() {
  picture_ = pictureOf(*this);
  QPainter painter(&picture_);
  painter.setClipRect(rect());
  painter.fillRect(rect(), Theme::surface);
  paintLoop(painter);
  paintTicks(painter);
  painter.fillRect(QRectF(0, height() - 1, width(), 1), Theme::line);
}

void RulerCanvas::paintLoop(QPainter& painter) const {
  const double left = scale().x(content_.loop.startBeat);
  const double right = scale().x(content_.loop.endBeat);
  painter.fillRect(QRectF(left, height() - loopHeight, right - left, loopHeight) & QRectF(rect()),
                   Theme::withOpacity(Theme::accent, 0.55));
}

void RulerCanvas::paintTicks(QPainter& painter) const {
  const TimelineScale beats = scale();
  const double widestNumber = 40;
  const int first = std::max(0, beats.wholeBeatAt(painter.clipBoundingRect().left() - widestNumber));
  const int last = std::min(beats.wholeBeatAt(painter.clipBoundingRect().right()),
                            static_cast<int>(content_.contentWidth / content_.pointsPerBeat));
  painter.setFont(Theme::font(Theme::Text::digits));
  painter.setPen(Theme::secondary);
  const double baseline = 4 + QFontMetricsF(painter.font()).ascent();
  for (int beat = first; beat <= last; ++beat) {
    const bool isBar = beat % barBeats == 0;
    const double x = beats.x(beat);
    const int tick = isBar ? barTick : beatTick;
    painter.fillRect(QRectF(x, height() - tick, 1, tick), isBar ? Theme::line : Theme::lineWeak);
    if (isBar) painter.drawText(QPointF(x + 4.5, baseline), QString::number(beat / barBeats + 1));
  }
}

void RulerCanvas::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
  seek(scale().beatAt(event->position().x()));
}

void RulerCanvas::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() & Qt::LeftButton) seek(scale().beatAt(event->position().x()));
}

void RulerCanvas::keyPressEvent(QKeyEvent* event) {
  const auto beats = beatsOf(*event);
  if (!beats) return QWidget::keyPressEvent(event);
  seek(transport_.playhead() + *beats);
}

}  // namespace velmora
