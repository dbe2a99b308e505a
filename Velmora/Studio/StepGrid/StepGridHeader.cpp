#include "Velmora/Studio/StepGrid/StepGridHeader.h"

#include <QPainter>

#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

constexpr int buttonSize = 44;
constexpr int captionHeight = 24;
constexpr int symbolSize = 16;
constexpr int gap = 8;

}  // namespace

StepGridHeader::StepGridHeader(QWidget* parent)
    : QWidget(parent),
      previous_("chevron.left", "Previous Bar", this),
      bar_({}, Theme::Text::control, Theme::text, this),
      next_("chevron.right", "Next Bar", this),
      caption_("16 STEPS / BAR", Theme::Text::capitals, Theme::secondary, this) {
  previous_.setObjectName("steps.previousBar");
  bar_.setObjectName("steps.bar");
  next_.setObjectName("steps.nextBar");
  bar_.setAlignment(Qt::AlignCenter);
  connect(&previous_, &QAbstractButton::clicked, this, [this] { onTurnPage(-1); });
  connect(&next_, &QAbstractButton::clicked, this, [this] { onTurnPage(1); });
}

void StepGridHeader::setPage(int page, int pageCount) {
  pageCount_ = pageCount;
  bar_.setText(QString("Bar %1 of %2").arg(page + 1).arg(pageCount));
  previous_.setVisible(showsBars());
  bar_.setVisible(showsBars());
  next_.setVisible(showsBars());
  previous_.setEnabled(page > 0);
  next_.setEnabled(page + 1 < pageCount);
  place();
}

QSize StepGridHeader::sizeHint() const { return {0, showsBars() ? buttonSize : captionHeight}; }

void StepGridHeader::place() {
  const int captionWidth = caption_.sizeHint().width();
  caption_.setGeometry(width() - captionWidth, 0, captionWidth, height());
  previous_.setGeometry(0, 0, buttonSize, buttonSize);
  bar_.setGeometry(buttonSize, 0, bar_.sizeHint().width(), buttonSize);
  next_.setGeometry(bar_.geometry().right() + 1, 0, buttonSize, buttonSize);
}

void StepGridHeader::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF symbol(caption_.x() - gap - symbolSize, 0, symbolSize, height());
  Theme::drawSymbol(painter, symbol, "square.grid.4x3.fill", Theme::secondary, 11);
}

}  // namespace velmora
