#include "Velmora/Studio/StepGrid/StepGridView.h"

#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>

#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr int inset = 12;
constexpr int labelGap = 6;
constexpr int cellsLeft = StepRowLabels::labelWidth + labelGap;
constexpr int footerGap = 8;
constexpr int footerHeight = 20;
constexpr int scrollStep = 16;

/// By as little as brings the range into view.
void scrollTo(QScrollBar& bar, int from, int to) {
  bar.setValue(std::clamp(bar.value(), std::min(from, to - bar.pageStep()), from));
}

}  // namespace

StepGridView::StepGridView(AppModel& model, const UUID& patternID, QWidget* parent)
    : QAbstractScrollArea(parent),
      model_(model),
      patternID_(patternID),
      header_(this),
      columns_(this),
      rows_(this),
      canvas_(viewport()),
      footer_("Tap a step to toggle · Hold and drag up/down for velocity", Theme::Text::caption,
              Theme::secondary, viewport()),
      playhead_(model, patternID, &canvas_),
      listener_([this] { refresh(); }, model.song) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  viewport()->setBackgroundRole(QPalette::Window);
  footer_.setAlignment(Qt::AlignCenter);
  columns_.setCellsLeft(cellsLeft);
  wire();
  refresh();
}

void StepGridView::wire() {
  horizontalScrollBar()->setSingleStep(scrollStep);
  verticalScrollBar()->setSingleStep(scrollStep);
  header_.onTurnPage = [this](int pages) { turnPage(pages); };
  canvas_.onTurnPage = header_.onTurnPage;
  canvas_.onReveal = [this](const QRect& rect) { reveal(rect); };
  canvas_.onPan = [this](const QPoint& way) {
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - way.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - way.y());
  };
  canvas_.onToggle = [this](DrumSound sound, int step) {
    model_.toggleDrumStep(patternID_, sound, step);
    refresh();
  };
  canvas_.onSetVelocity = [this](DrumSound sound, int step, int velocity) {
    model_.setDrumStepVelocity(patternID_, sound, step, velocity);
    refresh();
  };
}

// What is shown

void StepGridView::refresh() {
  const Pattern* const pattern = model_.song().pattern(patternID_);
  showPage(pattern ? *pattern : Pattern{.lengthBeats = 0});
}

void StepGridView::showPage(const Pattern& pattern) {
  const StepPages pages{pattern.stepCount()};
  const Track* const track = model_.song().track(pattern.trackID);
  const QColor color = Theme::color(track ? track->color : TrackColor::blue);
  page_ = pages.clamped(page_);
  header_.setPage(page_, pages.count());
  layOut();
  const auto grid = StepGridGeometry::fitting(viewport()->width() - inset, pages.visibleCount(page_));
  canvas_.setPage({pattern, StepPages::firstStep(page_), color, grid});
  playhead_.setPage(StepPages::firstStep(page_), grid);
  columns_.setGrid(grid);
  rows_.setColor(color);
  updateScrollBars();
  placeParts();
}

void StepGridView::turnPage(int pages) {
  page_ = std::max(page_ + pages, 0);
  refresh();
}

// Where it stands

void StepGridView::layOut() {
  const int headerHeight = header_.sizeHint().height();
  setViewportMargins(inset + cellsLeft, inset + headerHeight + StepColumnLabels::lineHeight, 0, 0);
  const QRect cells = viewport()->geometry();
  header_.setGeometry(0, inset, cells.right() + 1 - inset, headerHeight);
  columns_.setGeometry(inset, cells.top() - StepColumnLabels::lineHeight, cellsLeft + cells.width(),
                       StepColumnLabels::lineHeight);
  rows_.setGeometry(inset, cells.top(), StepRowLabels::labelWidth, cells.height());
}

void StepGridView::updateScrollBars() {
  const QSize room = viewport()->size();
  const QSize content = canvas_.size() + QSize(inset, footerGap + footerHeight + inset);
  horizontalScrollBar()->setRange(0, std::max(content.width() - room.width(), 0));
  horizontalScrollBar()->setPageStep(room.width());
  verticalScrollBar()->setRange(0, std::max(content.height() - room.height(), 0));
  verticalScrollBar()->setPageStep(room.height());
}

void StepGridView::placeParts() {
  const QPoint offset(horizontalScrollBar()->value(), verticalScrollBar()->value());
  canvas_.move(-offset);
  columns_.setOffset(offset.x());
  rows_.setOffset(offset.y());
  footer_.setGeometry(0, canvas_.height() - offset.y() + footerGap, viewport()->width() - inset,
                      footerHeight);
}

void StepGridView::reveal(const QRect& rect) {
  scrollTo(*horizontalScrollBar(), rect.left(), rect.right() + 1);
  scrollTo(*verticalScrollBar(), rect.top(), rect.bottom() + 1);
}

void StepGridView::resizeEvent(QResizeEvent*) { refresh(); }

void StepGridView::scrollContentsBy(int, int) { placeParts(); }

// Scrolling

/// The base class hears the wheel over its viewport only; here it turns beside the cells, too.
bool StepGridView::event(QEvent* event) {
  if (event->type() != QEvent::Wheel) return QAbstractScrollArea::event(event);
  wheelEvent(static_cast<QWheelEvent*>(event));
  return event->isAccepted();
}

void StepGridView::wheelEvent(QWheelEvent* event) {
  if (!(event->modifiers() & Qt::ShiftModifier)) return QAbstractScrollArea::wheelEvent(event);
  const QPoint turn = event->angleDelta();
  QWheelEvent sideways(event->position(), event->globalPosition(), event->pixelDelta().transposed(),
                       QPoint(turn.x() + turn.y(), 0), event->buttons(),
                       event->modifiers() & ~Qt::ShiftModifier, event->phase(), event->inverted());
  QAbstractScrollArea::wheelEvent(&sideways);
  event->setAccepted(sideways.isAccepted());
}

}  // namespace velmora
