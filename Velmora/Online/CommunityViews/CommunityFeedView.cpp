#include "Velmora/Online/CommunityViews/CommunityFeedView.h"

#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <utility>

#include "Velmora/Online/CommunityViews/CommunityReportView.h"
#include "Velmora/Theme/Placeholder.h"

namespace velmora {

namespace {

struct Order {
  const char* title;
  const char* value;
};

constexpr std::array<Order, 3> orders{
    {{"Fresh", "newest"}, {"Most upvoted", "popular"}, {"Following", "following"}}};

/// Whom one follows is known only of who is signed in.
QStringList orderTitles(bool isSignedIn) {
  QStringList titles;
  for (const Order& order : orders) titles << order.title;
  if (!isSignedIn) titles.removeLast();
  return titles;
}

constexpr int statusHeight = 20;
constexpr int progressWidth = 72;
constexpr int widestPicker = 460;

/// As wide as the rows of the list, and above or under them.
void addInLine(QVBoxLayout& column, QLayout* content) {
  auto* const holder = new QWidget;
  holder->setLayout(content);
  holder->setMaximumWidth(CommunityPostList::widest);
  content->setContentsMargins(0, 0, 0, 0);
  auto* const line = new QHBoxLayout;
  line->setContentsMargins(CommunityPostList::sideMargin, 0, CommunityPostList::sideMargin, 0);
  line->addStretch();
  line->addWidget(holder, 1);
  line->addStretch();
  column.addLayout(line);
}

}  // namespace

CommunityFeedView::CommunityFeedView(CommunityStore& store, QWidget* parent)
    : QWidget(parent),
      store_(store),
      orders_("Feed order", orderTitles(store.isSignedIn())),
      list_(actions(), reload_),
      listener_([this] { refresh(); }, store.posts, store.page, store.nextPage, store.order, store.playingID),
      workListener_(
          [this] {
            hasLoaded_ = hasLoaded_ || !store_.isLoading();
            refreshWork();
          },
          store.isLoading, store.isBusy, store.posts, store.page) {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  addInLine(*column, makeHeader());
  addInLine(*column, makeStatus());
  column->addSpacing(4);
  pages_.addWidget(&list_);
  pages_.addWidget(
      new Placeholder({"waveform", "Room for your first beat",
                       "Approved previews appear here. Share a short loop from the Share tab."}));
  column->addWidget(&pages_, 1);
  addInLine(*column, makePager());
  auto* const again = new QShortcut(Qt::Key_F5, this);
  connect(again, &QShortcut::activated, this, [this] { reload(); });
  refresh();
  refreshWork();
}

QLayout* CommunityFeedView::makeHeader() {
  orders_.setObjectName("community.order");
  orders_.setMaximumWidth(widestPicker);
  orders_.onSelect = [this](int index) { store_.setOrder(orders.at(static_cast<std::size_t>(index)).value); };
  reload_.setObjectName("community.reload");
  reload_.setToolTip("Reload (F5)");
  connect(&reload_, &QAbstractButton::clicked, this, [this] { reload(); });
  auto* const row = new QHBoxLayout;
  row->setSpacing(12);
  row->addWidget(&orders_, 1);
  row->addStretch();
  row->addWidget(&reload_);
  return row;
}

/// One height whatever it says, so that the list stays where it is.
QLayout* CommunityFeedView::makeStatus() {
  progress_.setObjectName("community.loading");
  progress_.setAccessibleName("Loading beats…");
  progress_.setRange(0, 0);
  progress_.setTextVisible(false);
  progress_.setFixedSize(progressWidth, 6);
  status_.setObjectName("community.status");
  status_.setFixedHeight(statusHeight);
  auto* const row = new QHBoxLayout;
  row->setSpacing(10);
  row->addWidget(&progress_);
  row->addWidget(&status_, 1);
  return row;
}

QLayout* CommunityFeedView::makePager() {
  previous_.setObjectName("community.previous");
  more_.setObjectName("community.more");
  connect(&previous_, &QAbstractButton::clicked, this, [this] { turnTo(store_.page() - 1); });
  connect(&more_, &QAbstractButton::clicked, this, [this] {
    if (const auto next = store_.nextPage()) turnTo(*next);
  });
  auto* const row = new QHBoxLayout;
  row->addWidget(&previous_);
  row->addStretch(1);
  row->addWidget(&more_);
  return row;
}

CommunityPostRow::Actions CommunityFeedView::actions() {
  return {.play = [this](const CommunityPost& post) { store_.togglePlayback(post.id); },
          .vote = [this](const CommunityPost& post) { store_.toggleVote(post); },
          .follow = [this](const CommunityPost& post) { store_.toggleFollow(post.creator); },
          .report = [this](const CommunityPost& post) { report(post); },
          .block = [this](const CommunityPost& post) { store_.block(post.creator.id); },
          .isSignedIn = store_.isSignedIn()};
}

void CommunityFeedView::reload() {
  if (!store_.isBusy()) turnTo(1);
}

void CommunityFeedView::turnTo(std::int64_t page) { store_.load(page); }

void CommunityFeedView::report(const CommunityPost& post) {
  (new CommunityReportView(store_, post, this))->open();
}

void CommunityFeedView::refresh() {
  const auto order = std::ranges::find(orders, store_.order(), &Order::value);
  const int index = static_cast<int>(order - orders.begin());
  if (orders_.selected() != index) orders_.setSelected(index);
  const bool isAnotherOrder = std::exchange(shownOrder_, store_.order()) != shownOrder_;
  const bool isAnotherPage = std::exchange(shownPage_, store_.page()) != shownPage_;
  if (isAnotherOrder || isAnotherPage) list_.startOver();
  list_.show(store_.posts());
  list_.setPlaying(store_.playingID());
  offer(previous_, store_.page() > 1);
  offer(more_, store_.nextPage().has_value());
}

/// From a button that goes away the keyboard comes to the posts.
void CommunityFeedView::offer(QWidget& button, bool isOffered) {
  if (!isOffered && button.hasFocus()) list_.takeFocus();
  button.setVisible(isOffered);
}

void CommunityFeedView::refreshWork() {
  const bool isLoading = store_.isLoading();
  progress_.setVisible(isLoading);
  status_.setText(isLoading ? "Loading beats…" : "Page " + QString::number(store_.page()));
  list_.setLocked(store_.isBusy());
  reload_.setEnabled(!store_.isBusy());
  const bool isEmpty = store_.posts().empty() && hasLoaded_;
  pages_.setCurrentIndex(isEmpty ? 1 : 0);
}

}  // namespace velmora
