#include "Velmora/Studio/Arrangement/ArrangementView.h"

#include <QPainter>
#include <algorithm>
#include <utility>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Studio/Arrangement/LoopEditorView.h"
#include "Velmora/Studio/Arrangement/ShownLoop.h"
#include "Velmora/Theme/Popover.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

using Geometry = ArrangementGeometry;

constexpr int dividerWidth = 1;
constexpr int panelHeight = 44;

}  // namespace

ArrangementView::ArrangementView(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      state_(model),
      gestures_(model, state_),
      headers_(model, this),
      ruler_(
          model.transport(), [this](double beat) { model_.seek(beat); }, this),
      canvas_(gestures_, model.transport(), this),
      panel_(model, this),
      empty_(model, this),
      fileDrop_(model, state_, *this, canvas_),
      songListener_(
          [this] {
            state_.refresh();
            presentSong();
          },
          model.song, model.selectedTrackID, model.selectedClipID),
      transportListener_([this] { followTransport(); }, model.isPlaying, model.playheadRevision) {
  setObjectName("arrangement");
  setAttribute(Qt::WA_OpaquePaintEvent);
  connectToolbar();
  state_.onChange = [this] { present(); };
  headers_.onFocused = [this](const QRect& inList) { revealHeader(inList); };
  canvas_.playhead().onFrame = [this] { followPlayhead(); };
  presentSong();
  present();
  followTransport();
}

/// The focus still moves while the parts go.
ArrangementView::~ArrangementView() {
  state_.onChange = nullptr;
  headers_.onFocused = nullptr;
}

void ArrangementView::connectToolbar() {
  toolbar_.editClips.setChecked(state_.editsClips);
  connect(&toolbar_.editClips, &QAbstractButton::toggled, this,
          [this](bool isOn) { state_.editsClips = isOn; });
  connect(&toolbar_.placePattern, &QAbstractButton::clicked, this,
          [this] { model_.placePattern({}, model_.transport().playhead()); });
  connect(&toolbar_.zoomOut, &QAbstractButton::clicked, this,
          [this] { gestures_.zoomBy(1 / Geometry::zoomStep); });
  connect(&toolbar_.zoomIn, &QAbstractButton::clicked, this,
          [this] { gestures_.zoomBy(Geometry::zoomStep); });
  connect(&toolbar_.loop, &QAbstractButton::clicked, this, [this] { openLoopEditor(); });
  connect(&toolbar_.deleteClip, &QAbstractButton::clicked, this, [this] { model_.deleteSelectedClip(); });
}

void ArrangementView::openLoopEditor() { Popover::open(toolbar_.loop, new LoopEditorView(model_)); }

/// What one scroll offset and one zoom put into place, together.
void ArrangementView::present() {
  const TimelineViewport& viewport = state_.viewport();
  const LoopRange loop = shownLoop(state_.shownSong());
  canvas_.show({.data = state_.shownLanes(),
                .selectedTrackID = model_.selectedTrackID(),
                .loop = loop,
                .selectedClipID = model_.selectedClipID(),
                .pointsPerBeat = viewport.pointsPerBeat(),
                .scrollOffset = viewport.scrollOffset});
  ruler_.show({.contentWidth = viewport.contentSize().width(),
               .loop = loop,
               .pointsPerBeat = viewport.pointsPerBeat(),
               .scrollX = viewport.scrollOffset.x()});
  headers_.scrollTo(static_cast<int>(viewport.scrollOffset.y()));
}

void ArrangementView::presentSong() {
  toolbar_.deleteClip.setEnabled(model_.selectedClipID().has_value());
  showsPanel_ = panel_.showSelection();
  placeParts();
}

void ArrangementView::followTransport() {
  if (model_.isPlaying()) showPlayhead();
  ruler_.playhead().follow(model_.isPlaying());
  canvas_.playhead().follow(model_.isPlaying());
}

/// When the playhead leaves the view by itself the page turns. Who has scrolled away from it stays there
/// until it comes by, and a drag is never disturbed.
void ArrangementView::followPlayhead() {
  if (gestures_.isDragging()) return;
  const bool wasInView = viewport().showsBeat(std::exchange(followedBeat_, model_.transport().playhead()));
  if (wasInView) showPlayhead();
}

void ArrangementView::showPlayhead() {
  const double beat = model_.transport().playhead();
  if (viewport().showsBeat(beat)) return;
  state_.changeViewport([beat](TimelineViewport& viewport) { viewport.turnPageTo(beat); });
}

bool ArrangementView::hasRoomForPanelInToolbar() const {
  return toolbar_.fittedWidth() + panel_.sizeHint().width() <= width();
}

void ArrangementView::placeParts() {
  const bool isCompact = width() < Geometry::compactBelowWidth;
  toolbar_.fit(width());
  panel_.setRoom(isCompact ? SelectedClipPanel::Room::tight : SelectedClipPanel::Room::ample);
  toolbar_.setGeometry(0, 0, width(), ArrangementToolbar::barHeight);
  int bottom = height();
  if (showsPanel_ && !hasRoomForPanelInToolbar()) {
    bottom -= panelHeight;
    panel_.setGeometry(0, bottom, width(), panelHeight);
  } else {
    const int panelWidth = panel_.sizeHint().width();
    panel_.setGeometry(width() - panelWidth, 0, panelWidth, panelHeight);
  }
  const int top = ArrangementToolbar::barHeight;
  headers_.setDetail(isCompact ? TrackHeaderColumn::Detail::compact : TrackHeaderColumn::Detail::full);
  headers_.showTracks(model_.song().tracks, model_.selectedTrackID());
  headers_.setGeometry(0, top, headers_.width(), bottom - top);
  const int left = headers_.width() + dividerWidth;
  const int lanesTop = top + Geometry::rulerHeight;
  const int lanesWidth = std::max(0, width() - left);
  ruler_.setGeometry(left, top, lanesWidth, Geometry::rulerHeight);
  canvas_.setGeometry(left, lanesTop, lanesWidth, std::max(0, bottom - lanesTop));
  empty_.setGeometry(rect());
  showParts();
}

void ArrangementView::showParts() {
  const bool isEmpty = model_.song().tracks.empty();
  empty_.setVisible(isEmpty);
  panel_.setVisible(showsPanel_ && !isEmpty);
  for (QWidget* part : {static_cast<QWidget*>(&toolbar_), static_cast<QWidget*>(&headers_),
                        static_cast<QWidget*>(&ruler_), static_cast<QWidget*>(&canvas_)})
    part->setVisible(!isEmpty);
}

void ArrangementView::revealHeader(const QRect& inList) {
  state_.changeViewport([&](TimelineViewport& viewport) {
    viewport.reveal(QRectF(viewport.scrollOffset.x(), inList.top(), 1, inList.height()));
  });
}

bool ArrangementView::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) placeParts();  // the panel's numbers need another width
  if (event->type() != QEvent::NativeGesture) return QWidget::event(event);
  const auto& gesture = *static_cast<QNativeGestureEvent*>(event);
  return gestures_.nativeGesture(gesture, canvas_.mapFrom(this, gesture.position()));
}

void ArrangementView::wheelEvent(QWheelEvent* event) {
  if (event->position().y() < ruler_.y()) return event->ignore();
  gestures_.wheel(*event, canvas_.mapFrom(this, event->position()));
}

void ArrangementView::resizeEvent(QResizeEvent*) { placeParts(); }

void ArrangementView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::surface);
  const int top = ArrangementToolbar::barHeight;
  painter.fillRect(headers_.width(), top, dividerWidth, headers_.height(), Theme::line);
  if (showsPanel_ && panel_.y() > top) painter.fillRect(0, panel_.y(), width(), 1, Theme::line);
}

}  // namespace velmora
