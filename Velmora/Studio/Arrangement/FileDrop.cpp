#include "Velmora/Studio/Arrangement/FileDrop.h"

#include <QDropEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Studio/Parts/FileDropEvents.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

using Geometry = ArrangementGeometry;

}  // namespace

FileDrop::FileDrop(AppModel& model, ArrangementState& state, QWidget& view, QWidget& canvas)
    : model_(model), state_(state), view_(view), canvas_(canvas), mark_(&canvas) {
  mark_.setObjectName("arrangement.dropMark");
  mark_.setAttribute(Qt::WA_TransparentForMouseEvents);
  mark_.setAutoFillBackground(true);
  QPalette palette;
  palette.setColor(QPalette::Window, Theme::withOpacity(Theme::accent, 0.6));
  mark_.setPalette(palette);
  mark_.hide();
  view.setAcceptDrops(true);
  view.installEventFilter(this);
}

std::optional<FileDrop::Place> FileDrop::placeAt(const QPointF& inView) {
  const QPointF point = canvas_.mapFrom(&view_, inView);
  if (!canvas_.isVisible() || !QRectF(canvas_.rect()).contains(point)) return {};
  const QPointF content = state_.viewport().toContent(point);
  const LaneData& lanes = state_.lanes();
  const auto row = Geometry::row(content.y(), lanes.trackCount());
  const Track* const track = row ? model_.song().track(lanes.lane(*row).id) : nullptr;
  return Place{std::floor(content.x() / state_.viewport().pointsPerBeat()),
               track && track->kind.isAudio() ? *row : lanes.trackCount()};
}

AppModel::ImportTarget FileDrop::targetAt(const QPointF& inView) {
  const auto place = placeAt(inView);
  if (!place) return {};
  const LaneData& lanes = state_.lanes();
  AppModel::ImportTarget target{.trackID = {}, .beat = place->beat, .name = {}};
  if (place->row < lanes.trackCount()) target.trackID = lanes.lane(place->row).id;
  return target;
}

void FileDrop::hold(QDropEvent& event) {
  const auto place = placeAt(event.position());
  mark_.setVisible(place.has_value());
  if (place) {
    const double pointsPerBeat = state_.viewport().pointsPerBeat();
    const QRectF frame = Geometry::clipFrame(place->beat, 1, place->row, pointsPerBeat);
    mark_.setGeometry(frame.translated(-state_.viewport().scrollOffset).toRect());
  }
  acceptAsCopy(event);
}

void FileDrop::drop(QDropEvent& event, std::filesystem::path file) {
  mark_.hide();
  AppModel::ImportTarget target = targetAt(event.position());
  model_.importAudio(std::move(file), std::move(target));
  acceptAsCopy(event);
}

bool FileDrop::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop: {
      auto& held = *static_cast<QDropEvent*>(event);
      auto file = importableFile(model_, held);
      if (!file) {
        event->ignore();
      } else if (event->type() == QEvent::Drop) {
        drop(held, std::move(*file));
      } else {
        hold(held);
      }
      return true;
    }
    case QEvent::DragLeave:
      mark_.hide();
      return true;
    default:
      return QObject::eventFilter(watched, event);
  }
}

}  // namespace velmora
