#include "Velmora/Online/CommunityViews/VoteButton.h"

#include <QPainter>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int groundInset = 6;
constexpr double radius = 8;
constexpr int symbolRoom = 26;
constexpr int endMargin = 8;

}  // namespace

VoteButton::VoteButton(QWidget* parent) : PaintedButton("Upvote", parent) {
  setAttribute(Qt::WA_Hover);
  setVotes(0, false);
}

void VoteButton::setVotes(std::int64_t votes, bool isVoted) {
  isVoted_ = isVoted;
  setText(QString::number(votes));
  setLabel(isVoted ? "Take back upvote" : "Upvote");
  update();
}

void VoteButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(Theme::disabledOpacity);
  const QRect ground = rect().adjusted(0, groundInset, 0, -groundInset);
  const QColor color = isVoted_ ? Theme::accent : Theme::text;
  if (isVoted_) {
    paintPanel(painter, ground, radius, Theme::withOpacity(Theme::accent, 0.18),
               Theme::withOpacity(Theme::accent, 0.6));
  } else {
    const bool isPointedAt = underMouse() && isEnabled();
    paintPanel(painter, ground, radius, isPointedAt ? Theme::lineWeak : Theme::stripe, Theme::lineWeak);
  }
  if (isDown()) paintPanel(painter, ground, radius, Theme::lineWeak);
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, ground, radius);
  Theme::drawSymbol(painter, QRect(ground.left() + 4, ground.top(), symbolRoom, ground.height()),
                    "chevron.up", color, 16);
  const QRect place = ground.adjusted(symbolRoom + 4, 0, -endMargin, 0);
  painter.setPen(color);
  painter.setFont(Theme::font(Theme::Text::control));
  painter.drawText(place, Qt::AlignCenter,
                   painter.fontMetrics().elidedText(text(), Qt::ElideRight, place.width()));
}

}  // namespace velmora
