#include "Velmora/Studio/StepGrid/StepPlayhead.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Velmora/Studio/StepGrid/PatternBeat.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr double outlineWidth = 1.5;
constexpr double cornerRadius = 4;

}  // namespace

StepPlayhead::StepPlayhead(AppModel& model, const UUID& patternID, QWidget* parent)
    : QWidget(parent),
      model_(model),
      patternID_(patternID),
      listener_([this] { refresh(); }, model.song, model.mode, model.isPlaying, model.playheadRevision) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setGeometry({});
}

void StepPlayhead::setPage(int firstStep, const StepGridGeometry& geometry) {
  firstStep_ = firstStep;
  geometry_ = geometry;
  place();
}

std::optional<int> StepPlayhead::column() const {
  const Pattern* const pattern = model_.song().pattern(patternID_);
  if (!pattern) return {};
  const TransportController& transport = model_.transport();
  const auto beat =
      patternBeat(model_.song(), *pattern, {model_.mode(), transport.playhead(), transport.renderedBeat()});
  if (!beat) return {};
  const double column = std::floor(*beat / stepLengthBeats) - firstStep_;
  return column >= 0 && column < geometry_.stepCount ? std::optional(static_cast<int>(column)) : std::nullopt;
}

/// No size at all while nothing is marked; hiding would stop the frames.
void StepPlayhead::place() {
  const auto marked = column();
  setGeometry(marked ? geometry_.column(*marked).toAlignedRect() : QRect());
}

void StepPlayhead::refresh() {
  isVisible() && model_.isPlaying() ? frames_.start() : frames_.stop();
  place();
}

void StepPlayhead::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  refresh();
}

void StepPlayhead::hideEvent(QHideEvent* event) {
  frames_.stop();
  QWidget::hideEvent(event);
}

void StepPlayhead::paintEvent(QPaintEvent*) {
  if (!isPictureOf(*this, mark_)) paintMark();
  QPainter(this).drawPixmap(0, 0, mark_);
}

/// Kept from step to step, as its round corners are dear.
void StepPlayhead::paintMark() {
  constexpr double inset = outlineWidth / 2;
  mark_ = pictureOf(*this);
  QPainter painter(&mark_);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Theme::withOpacity(Theme::text, 0.65), outlineWidth));
  painter.setBrush(Theme::withOpacity(Theme::text, 0.05));
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), cornerRadius, cornerRadius);
}

}  // namespace velmora
