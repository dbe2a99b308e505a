#include "Velmora/Online/CommunityViews/CommunityPostList.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "Velmora/Online/CommunityViews/RowMatching.h"
#include "Velmora/Theme/Spoken.h"

namespace velmora {

namespace {

constexpr int gap = 8;
constexpr int bottomMargin = 12;

}  // namespace

CommunityPostList::CommunityPostList(CommunityPostRow::Actions actions, QWidget& before, QWidget* parent)
    : QScrollArea(parent), actions_(std::move(actions)), before_(before) {
  CommunityPostRow::install();
  setObjectName("community.posts");
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  verticalScrollBar()->setSingleStep(24);
  setWidget(&content_);
  content_.setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
  content_.setAccessibleName("Beat feed");
  Spoken::attach(content_, {.role = QAccessible::List});
}

std::unique_ptr<CommunityPostRow> CommunityPostList::makeRow() {
  auto row = std::make_unique<CommunityPostRow>(actions_);
  row->setParent(&content_);
  for (QWidget* const stop : row->stops()) stop->installEventFilter(this);
  return row;
}

void CommunityPostList::show(const std::vector<CommunityPost>& posts) {
  matchRows(rows_, posts, [this] { return makeRow(); });
  arrange();
  for (const auto& row : rows_) row->setVisible(true);
  setCurrent(currentIndex());
}

/// Of the row with the focus, of the post that was current, or of what has come to its place.
std::size_t CommunityPostList::currentIndex() const {
  const std::size_t focused = indexOf(window()->focusWidget());
  if (focused < rows_.size()) return focused;
  const auto found = std::ranges::find(rows_, currentID_, [](const auto& row) { return row->id(); });
  if (found != rows_.end()) return static_cast<std::size_t>(found - rows_.begin());
  return rows_.empty() ? 0 : std::min(current_, rows_.size() - 1);
}

void CommunityPostList::setPlaying(const std::optional<UUID>& id) {
  for (const auto& row : rows_) row->setPlaying(row->id() == id);
}

void CommunityPostList::startOver() {
  verticalScrollBar()->setValue(0);
  current_ = 0;
  currentID_ = {};
}

void CommunityPostList::setLocked(bool isLocked) {
  const QWidget* const focus = window()->focusWidget();
  if (isLocked && content_.isEnabled()) hadFocus_ = focus && content_.isAncestorOf(focus);
  lock_.setLocked(isLocked);
  const bool isFocusLost = hadFocus_ && !isLocked && !window()->focusWidget();
  if (isFocusLost) takeFocus();
}

void CommunityPostList::takeFocus() {
  if (current_ < rows_.size()) rows_[current_]->setFocus(Qt::TabFocusReason);
}

// Places

/// In the middle of the list, whose scroll bar comes and goes in the margin.
void CommunityPostList::arrange() {
  const int width = std::min(this->width() - 2 * sideMargin, widest);
  int y = 0;
  for (const auto& row : rows_) {
    const int height = row->heightForWidth(width);
    row->setGeometry((this->width() - width) / 2, y, width, height);
    y += height + gap;
  }
  content_.resize(viewport()->width(), y + bottomMargin);
}

void CommunityPostList::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  arrange();
}

/// The row there, or the nearest one.
std::size_t CommunityPostList::rowAt(int y) const {
  const auto under =
      std::ranges::find_if(rows_, [y](const auto& row) { return row->geometry().bottom() >= y; });
  return std::min(static_cast<std::size_t>(under - rows_.begin()), rows_.size() - 1);
}

// Keyboard

std::size_t CommunityPostList::indexOf(const QObject* stop) const {
  const auto holds = [stop](const auto& row) {
    return stop && (row.get() == stop || row.get() == stop->parent());
  };
  return static_cast<std::size_t>(std::ranges::find_if(rows_, holds) - rows_.begin());
}

void CommunityPostList::setCurrent(std::size_t index) {
  for (std::size_t n = 0; n < rows_.size(); ++n) rows_[n]->setReachable(n == index);
  if (index >= rows_.size()) return;
  current_ = index;
  currentID_ = rows_[index]->id();
  QWidget* last = &before_;
  for (QWidget* const stop : rows_[index]->stops()) {
    setTabOrder(last, stop);
    last = stop;
  }
}

bool CommunityPostList::eventFilter(QObject* watched, QEvent* event) {
  auto* const stop = qobject_cast<QWidget*>(watched);
  if (event->type() == QEvent::KeyPress) return moveBy(static_cast<QKeyEvent&>(*event), stop);
  if (event->type() == QEvent::FocusIn) {
    const std::size_t index = indexOf(stop);
    setCurrent(index);
    if (index < rows_.size()) ensureWidgetVisible(rows_[index].get(), 0, gap);
  }
  return false;
}

bool CommunityPostList::moveBy(QKeyEvent& event, QWidget* stop) {
  const std::size_t from = indexOf(stop);
  if (from >= rows_.size()) return false;
  const QRect place = rows_[from]->geometry();
  std::size_t to = from;
  switch (event.key()) {
    case Qt::Key_Up:
      to = from > 0 ? from - 1 : 0;
      break;
    case Qt::Key_Down:
      to = std::min(from + 1, rows_.size() - 1);
      break;
    case Qt::Key_PageUp:
      to = rowAt(place.top() - viewport()->height());
      break;
    case Qt::Key_PageDown:
      to = rowAt(place.top() + viewport()->height());
      break;
    case Qt::Key_Home:
      to = 0;
      break;
    case Qt::Key_End:
      to = rows_.size() - 1;
      break;
    default:
      return false;
  }
  const auto stops = rows_[from]->stops();
  const auto column = static_cast<std::size_t>(std::ranges::find(stops, stop) - stops.begin());
  rows_[to]->stops().at(column)->setFocus(Qt::TabFocusReason);
  return true;
}

}  // namespace velmora
