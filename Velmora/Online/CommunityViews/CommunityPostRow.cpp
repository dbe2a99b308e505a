#include "Velmora/Online/CommunityViews/CommunityPostRow.h"

#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>

#include "Velmora/Online/CommunityViews/ServiceText.h"
#include "Velmora/Theme/AccessiblePart.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr double radius = 10;
constexpr int padding = 12;
constexpr int buttonInset = 8;  // of the 44 to press
constexpr int button = 44;
constexpr int titleHeight = 22;
constexpr int lineHeight = 19;
constexpr int lengthWidth = 64;
constexpr int leastHeight = 2 * buttonInset + button;
constexpr int mostTitleLines = 3;
constexpr int mostCaptionLines = 12;
constexpr int widestLetter = 24;  // of these texts' fonts

const QString demoLine = "Velmora demo · generated example";
const QString signInHint = "Sign in to upvote or follow creators.";

/// At least a second, in whole ones.
QString lengthText(std::int64_t milliseconds) {
  return QString::number(std::max<std::int64_t>(milliseconds / 1000, 1)) + " sec";
}

QString votesText(std::int64_t votes) {
  return QString::number(votes) + (votes == 1 ? " upvote" : " upvotes");
}

QString elided(const QString& text, const QFont& font, int width) {
  return QFontMetrics(font).elidedText(text, Qt::ElideRight, width);
}

/// Of a text with more lines, the last one is elided.
QStringList wrapped(const QString& text, const QFont& font, int width, int mostLines) {
  if (text.isEmpty()) return {};
  if (!text.contains('\n') && text.size() * widestLetter <= width) return {text};
  const QString broken = QString(text).replace('\n', QChar::LineSeparator);
  QTextLayout layout(broken, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  QStringList lines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    const QString rest = broken.mid(line.textStart());
    const bool isLast = lines.size() + 1 == mostLines;
    lines << (isLast ? elided(rest, font, width) : rest.left(line.textLength()).trimmed());
    if (isLast) break;
  }
  layout.endLayout();
  return lines;
}

class AccessiblePostRow final : public QAccessibleWidget {
 public:
  explicit AccessiblePostRow(CommunityPostRow* row) : QAccessibleWidget(row, QAccessible::ListItem) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name) return row().spokenName();
    return kind == QAccessible::Description ? row().spokenDetails() : QAccessibleWidget::text(kind);
  }
  QStringList actionNames() const override {
    return widget()->isEnabled() ? QStringList{pressAction()} + QAccessibleWidget::actionNames()
                                 : QStringList{};
  }
  void doAction(const QString& name) override {
    if (name != pressAction()) return QAccessibleWidget::doAction(name);
    if (widget()->isEnabled()) row().press();
  }

 private:
  CommunityPostRow& row() const { return *static_cast<CommunityPostRow*>(object()); }
};

}  // namespace

void CommunityPostRow::install() { installAccessible<CommunityPostRow, AccessiblePostRow>(); }

CommunityPostRow::CommunityPostRow(const Actions& actions)
    : actions_(actions),
      play_("play.fill", "Play preview", this),
      vote_(this),
      menu_("ellipsis.circle", "Creator actions", this) {
  play_.setObjectName("community.post.play");
  vote_.setObjectName("community.post.vote");
  menu_.setObjectName("community.post.menu");
  menu_.setTint(Theme::secondary);
  Spoken::attach(menu_, {.role = QAccessible::ButtonMenu, .press = [this] { openMenu(underMenuButton()); }});
  connect(&play_, &QAbstractButton::clicked, this, [this] { press(); });
  connect(&vote_, &QAbstractButton::clicked, this, [this] { actions_.vote(post_); });
  connect(&menu_, &QAbstractButton::clicked, this, [this] { openMenu(underMenuButton()); });
  vote_.setEnabled(actions_.isSignedIn);
  setReachable(false);
}

void CommunityPostRow::show(const CommunityPost& post) {
  if (post == post_) return;
  post_ = post;
  refreshTexts();
  vote_.setVotes(post.votes, post.voted);
  if (!actions_.isSignedIn) vote_.setToolTip(signInHint);
  vote_.setAccessibleDescription(actions_.isSignedIn ? votesText(post.votes) + ". " + title_ : signInHint);
  play_.setAccessibleDescription(title_);
  menu_.setAccessibleDescription(creator_);
  update();
  if (!QAccessible::isActive()) return;
  QAccessibleEvent renamed(this, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&renamed);
}

void CommunityPostRow::refreshTexts() {
  title_ = ServiceText::line(post_.title);
  caption_ = ServiceText::paragraph(post_.caption);
  creator_ = ServiceText::handle(post_.creator.handle);
  length_ = lengthText(post_.durationMs);
  lines_.width = -1;
}

void CommunityPostRow::setPlaying(bool isPlaying) {
  if (std::exchange(isPlaying_, isPlaying) == isPlaying) return;
  play_.setSymbol(isPlaying ? "stop.fill" : "play.fill");
  play_.setLabel(isPlaying ? "Stop preview" : "Play preview");
  play_.setTint(isPlaying ? Theme::accent : Theme::text);
  update();
}

void CommunityPostRow::setReachable(bool isReachable) {
  for (QWidget* const stop : stops()) stop->setFocusPolicy(isReachable ? Qt::TabFocus : Qt::NoFocus);
}

QString CommunityPostRow::spokenName() const {
  return title_ + ", " + creator_ + ", " + length_ + ", " + votesText(post_.votes);
}

QString CommunityPostRow::spokenDetails() const {
  QStringList details;
  if (!caption_.isEmpty()) details << caption_;
  details << QString::number(post_.creator.followers) + " followers";
  if (isDemo()) details << demoLine;
  return details.join(". ");
}

// Menu

QPoint CommunityPostRow::underMenuButton() const { return menu_.mapToGlobal(QPoint(0, button)); }

void CommunityPostRow::openMenu(QPoint place) {
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setObjectName("community.creator");
  menu->setAccessibleName("Creator actions");
  const QString handle = menuText(creator_);
  const bool isSignedIn = actions_.isSignedIn;
  addTo(*menu, (post_.creator.following ? "Unfollow " : "Follow ") + handle, "person.2", actions_.follow,
        isSignedIn);
  addTo(*menu, "Report preview or creator", "exclamationmark.triangle.fill", actions_.report, true);
  menu->addSeparator();
  addTo(*menu, "Block " + handle, "xmark.circle", actions_.block, isSignedIn);
  menu->popup(place);
}

void CommunityPostRow::addTo(QMenu& menu, const QString& text, const QString& symbol,
                             const Actions::Action& action, bool isEnabled) {
  QAction* const entry = menu.addAction(Theme::symbolIcon(symbol), text);
  entry->setEnabled(isEnabled);
  connect(entry, &QAction::triggered, this, [&action, post = post_] { action(post); });
}

// Geometry and painting

QRect CommunityPostRow::words(int width) {
  constexpr int left = buttonInset + button + padding;
  constexpr int right = buttonInset + button + VoteButton::width + padding;
  return {left, padding, std::max(1, width - left - right), 0};
}

void CommunityPostRow::resizeEvent(QResizeEvent*) {
  play_.setGeometry(buttonInset, buttonInset, button, button);
  menu_.setGeometry(width() - buttonInset - button, buttonInset, button, button);
  vote_.setGeometry(menu_.x() - VoteButton::width, buttonInset, VoteButton::width, button);
}

const CommunityPostRow::Lines& CommunityPostRow::linesFor(int width) const {
  if (std::exchange(lines_.width, width) == width) return lines_;
  lines_.title = wrapped(title_, Theme::font(Theme::Text::title), width - lengthWidth, mostTitleLines);
  lines_.caption = wrapped(caption_, Theme::font(Theme::Text::body), width, mostCaptionLines);
  return lines_;
}

int CommunityPostRow::heightForWidth(int width) const {
  const Lines& lines = linesFor(words(width).width());
  const auto small = static_cast<int>(lines.caption.size()) + (isDemo() ? 2 : 1);
  const auto large = static_cast<int>(std::max<qsizetype>(lines.title.size(), 1));
  return std::max(leastHeight, 2 * padding + large * titleHeight + small * lineHeight);
}

void CommunityPostRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor outline = isPlaying_ ? Theme::withOpacity(Theme::accent, 0.6) : Theme::lineWeak;
  paintPanel(painter, rect(), radius, Theme::raised, outline);
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, rect(), radius);
  QRect line = words(width());
  paintLength(painter, line);
  const auto paintLine = [&](const QString& text, Theme::Text font, const QColor& color, int height) {
    line.setHeight(height);
    painter.setFont(Theme::font(font));
    painter.setPen(color);
    painter.drawText(line, Qt::AlignVCenter | Qt::AlignLeft | Qt::AlignAbsolute,
                     elided(text, painter.font(), line.width()));
    line.moveTop(line.bottom() + 1);
  };
  const Lines& lines = linesFor(line.width());
  for (const QString& text : lines.title)
    paintLine(text, Theme::Text::title, isPlaying_ ? Theme::accent : Theme::text, titleHeight);
  for (const QString& text : lines.caption) paintLine(text, Theme::Text::body, Theme::text, lineHeight);
  paintLine(creator_ + " · " + QString::number(post_.creator.followers) + " followers", Theme::Text::caption,
            Theme::secondary, lineHeight);
  if (!isDemo()) return;
  Theme::drawSymbol(painter, QRect(line.left(), line.top(), 16, lineHeight), "waveform", Theme::secondary,
                    13);
  line.adjust(22, 0, 0, 0);
  paintLine(demoLine, Theme::Text::caption, Theme::secondary, lineHeight);
}

/// At the end of the title's line.
void CommunityPostRow::paintLength(QPainter& painter, const QRect& words) const {
  const QRect place(words.right() + 1 - lengthWidth, words.top(), lengthWidth, titleHeight);
  painter.setFont(Theme::font(Theme::Text::caption));
  painter.setPen(Theme::secondary);
  painter.drawText(place, Qt::AlignVCenter | Qt::AlignRight, elided(length_, painter.font(), place.width()));
}

void CommunityPostRow::contextMenuEvent(QContextMenuEvent* event) {
  const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
  openMenu(isByMouse ? event->globalPos() : underMenuButton());
}

void CommunityPostRow::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      return press();
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace velmora
