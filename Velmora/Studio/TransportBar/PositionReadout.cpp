#include "Velmora/Studio/TransportBar/PositionReadout.h"

#include <QPainter>
#include <utility>

#include "Velmora/Theme/Spoken.h"

namespace velmora {

PositionReadout::PositionReadout(const AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      listener_([this] { follow(); }, model.isPlaying, model.playheadRevision) {
  setObjectName("transport.position");
  setAccessibleName("Position");
  setAttribute(Qt::WA_OpaquePaintEvent);
  Spoken::attach(*this, {.value = [this] { return position_.spoken(); }});
  look();
}

void PositionReadout::setSizeClass(SizeClass sizeClass) {
  face_.sizeClass = sizeClass;
  update();
}

void PositionReadout::showEvent(QShowEvent*) { follow(); }

void PositionReadout::hideEvent(QHideEvent*) { frames_.stop(); }

void PositionReadout::follow() {
  model_.isPlaying() && isVisible() ? frames_.start() : frames_.stop();
  look();
}

void PositionReadout::look() {
  const SongPosition position = SongPosition::at(model_.transport().playhead());
  if (position == position_ && !face_.number.isEmpty()) return;
  position_ = position;
  QString text = position.text();
  const bool isOfOtherLength = text.size() != face_.number.size();
  face_.number = std::move(text);
  update();
  if (isOfOtherLength && onLengthChange) onLengthChange();
}

void PositionReadout::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  face_.paint(painter, size());
}

}  // namespace velmora
