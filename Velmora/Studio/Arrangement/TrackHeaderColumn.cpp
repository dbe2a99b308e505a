#include "Velmora/Studio/Arrangement/TrackHeaderColumn.h"

#include <QApplication>
#include <QPainter>
#include <algorithm>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int rowHeight = static_cast<int>(ArrangementGeometry::laneHeight);
constexpr int titleHeight = ArrangementGeometry::rulerHeight;
constexpr int titleMargin = 16;

}  // namespace

TrackHeaderColumn::TrackHeaderColumn(AppModel& model, QWidget* parent)
    : QWidget(parent), model_(model), addTrack_(model, &list_) {
  setObjectName("arrangement.tracks");
  setAccessibleName("Tracks");
  setDetail(Detail::full);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { followFocus(now); });
}

void TrackHeaderColumn::setDetail(Detail detail) {
  detail_ = detail;
  const bool isFull = detail == Detail::full;
  setFixedWidth(isFull ? ArrangementGeometry::headerWidth : ArrangementGeometry::compactHeaderWidth);
}

void TrackHeaderColumn::showTracks(const SharedList<Track>& tracks,
                                   const std::optional<UUID>& selectedTrackID) {
  const bool isFull = detail_ == Detail::full;
  const std::vector<TrackHeaderRow*> before = rows_;
  for (std::size_t row = 0; row < tracks.size(); ++row) {
    const TrackHeaderRow::Content content{tracks[row], tracks[row].id == selectedTrackID, isFull, isFull};
    rowFor(row, content).show(content);
  }
  std::for_each(rows_.begin() + static_cast<std::ptrdiff_t>(tracks.size()), rows_.end(), [](auto* row) {
    row->hide();
    row->deleteLater();
  });
  rows_.resize(tracks.size());
  if (rows_ == before) return;
  placeRows();
  update();
}

/// A track keeps its row, and with it the focus, when others come and go.
TrackHeaderRow& TrackHeaderColumn::rowFor(std::size_t row, const TrackHeaderRow::Content& content) {
  const auto place = rows_.begin() + static_cast<std::ptrdiff_t>(row);
  const auto known =
      std::find_if(place, rows_.end(), [&](const auto* each) { return each->trackID() == content.track.id; });
  if (known != rows_.end()) {
    std::rotate(place, known, known + 1);
  } else {
    auto* const made = *rows_.insert(place, new TrackHeaderRow(model_, content, &list_));
    made->onStep = [this, made](int step) { stepFrom(*made, step); };
    made->QWidget::show();
  }
  return *rows_[row];
}

void TrackHeaderColumn::placeRows() {
  const int rowCount = static_cast<int>(rows_.size());
  window_.setGeometry(0, titleHeight, width(), height() - titleHeight);
  list_.resize(width(), rowHeight * rowCount + ArrangementGeometry::headerFootHeight);
  for (int row = 0; row < rowCount; ++row)
    rows_[static_cast<std::size_t>(row)]->setGeometry(0, rowHeight * row, width(), rowHeight);
  addTrack_.setGeometry(4, rowHeight * rowCount + 4, width() - 8, AddTrackMenu::leastHeight);
}

void TrackHeaderColumn::scrollTo(int y) { list_.move(0, -y); }

void TrackHeaderColumn::stepFrom(const TrackHeaderRow& row, int step) {
  const auto place = std::find(rows_.begin(), rows_.end(), &row) - rows_.begin() + step;
  if (place < 0 || place >= static_cast<std::ptrdiff_t>(rows_.size())) return;
  TrackHeaderRow* next = rows_[static_cast<std::size_t>(place)];
  next->setFocus(step < 0 ? Qt::BacktabFocusReason : Qt::TabFocusReason);
  model_.selectTrack(next->trackID());
}

void TrackHeaderColumn::followFocus(const QWidget* focused) {
  if (!focused || !onFocused || !list_.isAncestorOf(focused)) return;
  const auto row = std::find_if(rows_.begin(), rows_.end(), [&](const auto* each) {
    return each == focused || each->isAncestorOf(focused);
  });
  onFocused(row == rows_.end() ? addTrack_.geometry() : (*row)->geometry());
}

void TrackHeaderColumn::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::surface);
  painter.fillRect(0, titleHeight - 1, width(), 1, Theme::line);
  painter.setFont(Theme::font(Theme::Text::capitals));
  painter.setPen(Theme::secondary);
  const QRect title(titleMargin, 0, width() - 2 * titleMargin, titleHeight - 1);
  painter.drawText(title, Qt::AlignVCenter | Qt::AlignLeft, "TRACKS");
  painter.drawText(title, Qt::AlignVCenter | Qt::AlignRight, QString::number(rows_.size()));
}

void TrackHeaderColumn::resizeEvent(QResizeEvent*) { placeRows(); }

void TrackHeaderColumn::List::paintEvent(QPaintEvent*) {
  const int rowsHeight = height() - ArrangementGeometry::headerFootHeight;
  QPainter(this).fillRect(0, rowsHeight, width(), 1, Theme::line);
}

}  // namespace velmora
