#include "Velmora/Studio/Arrangement/FileDrop.h"

#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

using Geometry = ArrangementGeometry;

/// The one file of this machine that is held; empty for anything else.
std::optional<std::filesystem::path> heldFile(const QDropEvent& event) {
  const QList<QUrl> urls = event.mimeData()->urls();
  if (urls.size() != 1 || !urls.front().isLocalFile()) return {};
  return QFile::encodeName(urls.front().toLocalFile()).toStdString();
}

void accept(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}

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

bool FileDrop::accepts(const QDropEvent& event) const {
  const bool isBusy = model_.isAudioBusy() || model_.isRecording() || model_.isProjectBusy();
  return !isBusy && heldFile(event);
}

void FileDrop::hold(QDropEvent& event) {
  const auto place = placeAt(event.position());
  mark_.setVisible(place.has_value());
  if (place) {
    const double pointsPerBeat = state_.viewport().pointsPerBeat();
    const QRectF frame = Geometry::clipFrame(place->beat, 1, place->row, pointsPerBeat);
    mark_.setGeometry(frame.translated(-state_.viewport().scrollOffset).toRect());
  }
  accept(event);
}

void FileDrop::drop(QDropEvent& event) {
  mark_.hide();
  AppModel::ImportTarget target = targetAt(event.position());
  model_.importAudio(*heldFile(event), std::move(target));
  accept(event);
}

bool FileDrop::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop: {
      auto& held = *static_cast<QDropEvent*>(event);
      if (!accepts(held)) {
        event->ignore();
      } else if (event->type() == QEvent::Drop) {
        drop(held);
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
